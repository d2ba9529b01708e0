#include "main_window/media_control.h"

#include "main_window/frmPlayer.h"

namespace zvonivec {

namespace {

/// Milliseconds from the window's start to the session's.
constexpr int DELAY = 300;

} // namespace

MediaControl::MediaControl(frmPlayer& player) : player_(player), start_(DELAY) {
    start_.Tick = [this] {
        start_.setEnabled(false);
        if (player_.Loaded()) {
            begin();
        }
    };
    start_.setEnabled(true);
}

MediaControl::~MediaControl() {
    player_.StateChanged = nullptr;
    player_.PositionJumped = nullptr;
}

void MediaControl::begin() {
    session_ = std::make_unique<MediaSession>(APPLICATION_NAME, commands());
    player_.StateChanged = [this] { show(); };
    player_.PositionJumped = [this] { session_->seeked(); };
    show();
}

void MediaControl::show() {
    session_->show(state());
}

MediaSession::State MediaControl::state() const {
    using Status = MediaSession::Status;
    MediaSession::State state{.volume = player_.WMP->settings().volume(),
                              .repeat = player_.Popup().chkPopup[popupRepeat].Value() == 1};
    if (!player_.Popup().fileIsLoaded()) {
        return state;
    }
    const PlayState now = player_.WMP->playState();
    PlayerEngine::Media& media = player_.WMP->currentMedia();
    state.fileIsLoaded = true;
    state.status = now == PlayState::playing  ? Status::playing
                   : now == PlayState::paused ? Status::paused
                                              : Status::stopped;
    state.path = player_.WMP->URL();
    state.title = media.getItemInfo("Title");
    state.artist = media.getItemInfo("Author");
    state.album = media.getItemInfo("Album");
    state.genre = media.getItemInfo("Genre");
    state.length = media.duration();
    return state;
}

MediaSession::Commands MediaControl::commands() const {
    frmPlayer& player = player_;
    return {.raise = [&player] { player.ComeForward(); },
            .quit = [&player] { player.CloseApplication(); },
            .play = [&player] { player.PressButton(buttonPlay); },
            .pause = [&player] { player.PressButton(buttonPause); },
            .stop = [&player] { player.PressButton(buttonStop); },
            .forward = [&player] { player.PressButton(buttonForward); },
            .seekTo = [&player](double seconds) { player.SeekTo(seconds); },
            .setVolume = [&player](std::int32_t percent) { player.SetVolume(percent); },
            .setRepeat =
                [&player](bool on) { player.Popup().chkPopup[popupRepeat].setValue(on ? 1 : 0); },
            .open = [&player](const std::string& path) { player.OpenGivenFile(path); },
            .position = [&player] { return player.WMP->controls().currentPosition(); }};
}

} // namespace zvonivec
