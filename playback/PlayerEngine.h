// The media player engine as the window sees it: the control WMP.
//
// Rules for callers
//  * Everything here is called on the user-interface thread, and both events are raised on it.
//  * Nothing here throws. What can't be done leaves things as they were.
//  * Nothing here waits for the disk or the device, but for three bounded waits that are wanted:
//    setURL reads as much of the file as "Filetype" needs, isReadOnlyItem("Bitrate") may take a few
//    milliseconds before it answers False, so that a caller may ask it in a loop, and the
//    destructor waits for the device to be closed, half a second at most.
//  * Texts are UTF-8. A path is the system's own name of the file, also where it isn't valid UTF-8.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zvonivec {

/// The engine's states, with their published numbers.
enum class PlayState : std::int32_t {
    undefined = 0, ///< no file
    stopped = 1,
    paused = 2,
    playing = 3,
    mediaEnded = 8,
    transitioning = 9,
    ready = 10, ///< a file is loaded and has not been played yet
};

class PlayerEngine {
public:
    /// Transport: what plays, and where.
    class Controls {
    public:
        virtual ~Controls() = default;

        /// Starts at currentPosition: the start of the track, where a pause left it, or where a
        /// seek put it. While playing, or without a file, it does nothing.
        virtual void play() = 0;

        /// Falls silent and keeps the position. Does nothing unless playing.
        virtual void pause() = 0;

        /// Falls silent and goes to the start of the track. PlayStateChange(stopped) is raised
        /// before stop returns, also when already stopped, so that a flag set just before the call
        /// is read by the event of that very call. Without a file it does nothing but raise it.
        virtual void stop() = 0;

        /// Seconds from the start of the track that are heard now; 0 without a file.
        [[nodiscard]] virtual double currentPosition() const = 0;

        /// Seeks; the position reads back at once. Below 0 is 0; at or past the end the track ends
        /// as if it had been played to there (while playing; else at the next play). Without a file
        /// or with a value that is no number: nothing.
        virtual void setCurrentPosition(double seconds) = 0;

        /// currentPosition as mm:ss, seconds cut, not rounded; minutes of 100 and more have three
        /// digits. "00:00" without a file.
        [[nodiscard]] virtual std::string currentPositionString() const = 0;
    };

    /// The loaded track.
    class Media {
    public:
        virtual ~Media() = default;

        /// Length in seconds, 0 without a file. Exact once the file has been measured.
        [[nodiscard]] virtual double duration() const = 0;

        /// duration as mm:ss, by the rules of currentPositionString.
        [[nodiscard]] virtual std::string durationString() const = 0;

        /// An attribute's text, empty when the track has none or the name is unknown. Names:
        /// "Filetype" (usual extension of what the content is, "mp3" for MPEG audio layer III),
        /// "Bitrate" (bits per second, decimal), "Author", "Title", "Album", "Description",
        /// "Genre", "WM/Year".
        [[nodiscard]] virtual std::string getItemInfo(std::string_view name) const = 0;

        /// Whether an attribute is fixed. "Bitrate" is not before the file has been measured, and
        /// is from then on, also when it could not be measured or there is no file; the wait for it
        /// is bounded. Every other name: True.
        [[nodiscard]] virtual bool isReadOnlyItem(std::string_view name) const = 0;
    };

    class Settings {
    public:
        virtual ~Settings() = default;

        /// Output volume, 0 (silence) to 100 (samples unchanged); 50 at creation.
        [[nodiscard]] virtual std::int32_t volume() const = 0;
        /// A value outside 0 to 100 goes to the bound.
        virtual void setVolume(std::int32_t percent) = 0;

        /// Whether setURL also plays; True at creation.
        [[nodiscard]] virtual bool autoStart() const = 0;
        virtual void setAutoStart(bool on) = 0;
    };

    PlayerEngine() = default;
    PlayerEngine(const PlayerEngine&) = delete;
    PlayerEngine& operator=(const PlayerEngine&) = delete;
    virtual ~PlayerEngine() = default;

    /// Full path of the loaded file, empty without one.
    [[nodiscard]] virtual std::string URL() const = 0;

    /// Loads a file in place of the one before, silently: neither event is raised for the file that
    /// goes, now or later. The empty text unloads. A file that is no playable one is loaded all the
    /// same: its "Filetype" says what it is, and only playing it raises MediaError.
    virtual void setURL(const std::string& path) = 0;

    /// Changes only on the user-interface thread: within a call or right before an event.
    [[nodiscard]] virtual PlayState playState() const = 0;

    /// Kept and never used: this engine has no menu.
    virtual void setEnableContextMenu(bool on) = 0;

    [[nodiscard]] virtual Controls& controls() = 0;
    [[nodiscard]] virtual Media& currentMedia() = 0;
    [[nodiscard]] virtual Settings& settings() = 0;

    /// Raised with each new state. stopped comes after every controls().stop() and at the natural
    /// end of a track; never by setURL. The natural end comes while the last samples are on their
    /// way through the device, about a tenth of a second before they have been heard, so that a
    /// handler which plays the track again joins its start to its end; the samples are heard out in
    /// any case. It is dropped when a stop, a seek or another file came first. A handler may call
    /// anything here.
    std::function<void(PlayState)> PlayStateChange;

    /// Raised once for a loaded file that can't be played (on): undecodable, unreadable, or no
    /// sound device. The engine is silent then, and the file stays loaded until setURL. Each
    /// further play tries once more.
    std::function<void()> MediaError;
};

/// Runs a function on the user-interface thread, later and in order. Callable from any thread.
using PostToUserInterface = std::function<void(std::function<void()>)>;

/// The real engine: libmpg123 decodes, TagLib reads tags, SDL2 plays. Never null.
/// It sets a variable of the environment, so it comes before threads that read those.
std::unique_ptr<PlayerEngine> createPlayerEngine(PostToUserInterface post);

} // namespace zvonivec
