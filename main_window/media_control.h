// Connects the main window with the desktop's own controls of players.
#pragma once

#include "controls/Timer.h"
#include "platform/media_session.h"

#include <memory>

namespace zvonivec {

class frmPlayer;

/// Lets the desktop's controls call the window's handlers, and reports to them what the window
/// shows. The player must outlive it.
class MediaControl {
public:
    /// Begins when the window has been on the screen for a moment, so that the start doesn't wait
    /// for the desktop.
    explicit MediaControl(frmPlayer& player);
    MediaControl(const MediaControl&) = delete;
    MediaControl& operator=(const MediaControl&) = delete;
    ~MediaControl();

private:
    void begin();
    void show();
    [[nodiscard]] MediaSession::State state() const;
    [[nodiscard]] MediaSession::Commands commands() const;

    frmPlayer& player_;
    Timer start_;
    std::unique_ptr<MediaSession> session_;
};

} // namespace zvonivec
