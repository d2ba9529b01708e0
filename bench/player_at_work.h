// The player's window with the real engine in this process, on a desktop and a sound server of its
// own.
#pragma once

#include "controls/Application.h"
#include "main_window/frmPlayer.h"
#include "tests/support/display.h"
#include "tests/support/pulse_server.h"

#include <memory>
#include <optional>
#include <string>

namespace bench {

/// A dialog that returns the file that was set last.
class FixedDialog : public zvonivec::CommonDialog {
public:
    std::string file;
    std::optional<std::string> ShowOpen() override { return file; }
};

class NoBoxes : public zvonivec::MessageBoxes {
    void MsgBox(const std::string&, int, const std::string&) override {}
};

class PlayerAtWork {
public:
    /// Without a display or a sound server, ok() is False.
    PlayerAtWork();
    ~PlayerAtWork();
    PlayerAtWork(const PlayerAtWork&) = delete;
    PlayerAtWork& operator=(const PlayerAtWork&) = delete;

    [[nodiscard]] bool ok() const { return player_ != nullptr; }
    [[nodiscard]] zvonivec::frmPlayer& player() { return *player_; }

    /// Opens a file through the dialog and plays it.
    void open(const std::string& file);

private:
    support::TemporaryFolder folder_;
    support::Display display_;
    support::PulseServer sound_{support::PulseServer::Sink(),
                                support::PulseServer::Kind::rewinding};
    std::unique_ptr<zvonivec::Application> application_;
    FixedDialog* dialog_ = nullptr; ///< the player's
    std::unique_ptr<zvonivec::frmPlayer> player_;
};

} // namespace bench
