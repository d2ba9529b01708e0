#include "platform/media_session.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <utility>
#include <windows.h>

namespace zvonivec {

struct MediaSession::Desktop : QAbstractNativeEventFilter {
    explicit Desktop(Commands wanted) : commands(std::move(wanted)) {
        qGuiApp->installNativeEventFilter(this);
    }
    ~Desktop() override { qGuiApp->removeNativeEventFilter(this); }

    bool nativeEventFilter(const QByteArray& /*type*/, void* message, qintptr* result) override {
        const auto* event = static_cast<const MSG*>(message);
        if (event->message != WM_APPCOMMAND || !carryOut(GET_APPCOMMAND_LPARAM(event->lParam))) {
            return false;
        }
        *result = TRUE;
        return true;
    }

    /// Returns whether the key is one of ours.
    bool carryOut(int key) const {
        switch (key) {
        case APPCOMMAND_MEDIA_PLAY:
            call(commands.play);
            return true;
        case APPCOMMAND_MEDIA_PAUSE:
            call(commands.pause);
            return true;
        case APPCOMMAND_MEDIA_PLAY_PAUSE:
            call(state.status == Status::playing ? commands.pause : commands.play);
            return true;
        case APPCOMMAND_MEDIA_STOP:
            call(commands.stop);
            return true;
        case APPCOMMAND_MEDIA_NEXTTRACK:
            call(commands.forward);
            return true;
        default:
            return false;
        }
    }
    void call(const std::function<void()>& command) const {
        if (state.fileIsLoaded) {
            command();
        }
    }

    Commands commands;
    State state;
};

MediaSession::MediaSession(const std::string& /*title*/, Commands commands)
    : desktop_(std::make_unique<Desktop>(std::move(commands))) {}

MediaSession::~MediaSession() = default;

void MediaSession::show(const State& state) {
    desktop_->state = state;
}

void MediaSession::seeked() {}

} // namespace zvonivec
