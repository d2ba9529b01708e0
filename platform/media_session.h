// The desktop's own controls of players: media keys, panels, the lock screen.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace zvonivec {

/// Answers the desktop's controls while the object exists: under Linux as an MPRIS player on the
/// session's message bus, on Windows as the receiver of media keys. Without a bus it does nothing.
/// Belongs to the user-interface thread.
class MediaSession {
public:
    enum class Status : std::uint8_t { stopped, paused, playing };

    /// What the desktop may show. Texts are UTF-8. Without a file only volume and repeat count.
    struct State {
        bool fileIsLoaded = false;
        Status status = Status::stopped;
        std::int32_t volume = 0; ///< percent
        bool repeat = false;
        std::string path = {};
        std::string title = {};
        std::string artist = {};
        std::string album = {};
        std::string genre = {};
        double length = 0; ///< seconds
        bool operator==(const State&) const = default;
    };

    /// What the desktop may ask for, on the user-interface thread. None may be empty. Commands that
    /// need a file aren't called without one.
    struct Commands {
        std::function<void()> raise;
        std::function<void()> quit;
        std::function<void()> play;
        std::function<void()> pause;
        std::function<void()> stop;
        std::function<void()> forward; ///< to the end of the track
        std::function<void(double seconds)> seekTo;
        std::function<void(std::int32_t percent)> setVolume;
        std::function<void(bool on)> setRepeat;
        std::function<void(const std::string& path)> open;
        std::function<double()> position; ///< seconds
    };

    MediaSession(const std::string& title, Commands commands);
    MediaSession(const MediaSession&) = delete;
    MediaSession& operator=(const MediaSession&) = delete;
    ~MediaSession();

    /// Reports a state to the desktop. Sends what has changed, and nothing when nothing has.
    void show(const State& state);
    /// Reports that the position has jumped.
    void seeked();

private:
    struct Desktop;
    std::unique_ptr<Desktop> desktop_;
};

} // namespace zvonivec
