// The media player engine as the window sees it: the control WMP.
//
// Rules for callers
//  * All functions are called on the user-interface thread, and its events are raised on it.
//  * No function throws. A call that can't be carried out changes nothing.
//  * No function waits for the disk or the device, with three exceptions: setURL waits 80 ms at
//    most for the part of the file that "Filetype" needs; isReadOnlyItem("Bitrate") takes a few
//    milliseconds before it returns False, so that a caller may ask it in a loop; the destructor
//    waits for the device to be closed, half a second at most. Where the system gives no thread,
//    setURL waits for as long as the disk takes.
//  * Texts are UTF-8. A path is the system's own name of the file, even if it isn't valid UTF-8.
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
    ready = 10, ///< a file is loaded and hasn't been played yet
};

class PlayerEngine {
public:
    /// Starts, stops and seeks.
    class Controls {
    public:
        virtual ~Controls() = default;

        /// Starts at currentPosition: at the start of the track, after a pause where it was paused,
        /// after a seek at its target. Does nothing while playing or without a file.
        virtual void play() = 0;

        /// Silences the track and keeps its position. Does nothing unless playing.
        virtual void pause() = 0;

        /// Silences the track and goes to its start. PlayStateChange(stopped) is raised before stop
        /// returns, even if already stopped, so that a flag set just before the call is read by the
        /// event of this call. Without a file stop only raises the event.
        virtual void stop() = 0;

        /// Position in seconds that is heard now; 0 without a file.
        [[nodiscard]] virtual double currentPosition() const = 0;

        /// Seeks; currentPosition returns the target at once. Below 0 is 0. A target at or past the
        /// end ends the track as if it had been played to its end: at once while playing, else at
        /// the next play. Does nothing without a file or with a value that is no number.
        virtual void setCurrentPosition(double seconds) = 0;

        /// currentPosition as mm:ss. Seconds are cut, not rounded; minutes from 100 on have three
        /// digits. "00:00" without a file.
        [[nodiscard]] virtual std::string currentPositionString() const = 0;
    };

    /// The loaded track.
    class Media {
    public:
        virtual ~Media() = default;

        /// Length in seconds, 0 without a file. Exact once the file has been measured.
        [[nodiscard]] virtual double duration() const = 0;

        /// duration as mm:ss, formatted like currentPositionString.
        [[nodiscard]] virtual std::string durationString() const = 0;

        /// Text of an attribute; empty when the track has none or the name is unknown. Names:
        /// "Filetype" (the usual extension for the content, "mp3" for MPEG audio layer III),
        /// "Bitrate" (bits per second, decimal), "Author", "Title", "Album", "Description",
        /// "Genre", "WM/Year".
        [[nodiscard]] virtual std::string getItemInfo(std::string_view name) const = 0;

        /// Whether an attribute is fixed: "Filetype" once the file's kind is known, the others once
        /// the file has been measured. "Bitrate" answers True 80 ms after setURL even so: a caller
        /// then has the estimates that there are, and MediaChange follows. Without a file, and for
        /// one that can't be measured, all are fixed.
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

    /// Replaces the loaded file. No event is raised for the old file, now or later. The empty text
    /// unloads. A file that can't be played is loaded too: "Filetype" says what it is, and only
    /// playing it raises MediaError. "Filetype" is known on return unless the disk takes more than
    /// 80 ms for it; MediaChange is raised later then.
    virtual void setURL(const std::string& path) = 0;

    /// Changes only on the user-interface thread, within a call or right before an event.
    [[nodiscard]] virtual PlayState playState() const = 0;

    /// Does nothing: this engine has no menu.
    virtual void setEnableContextMenu(bool on) = 0;

    [[nodiscard]] virtual Controls& controls() = 0;
    [[nodiscard]] virtual Media& currentMedia() = 0;
    [[nodiscard]] virtual Settings& settings() = 0;

    /// Raised with each new state. stopped is raised by every controls().stop() and at the natural
    /// end of a track, never by setURL. The natural end is raised about a tenth of a second before
    /// the last samples have been heard, so that a handler that plays the track again joins its
    /// start to its end without a gap. The samples are heard to their end in any case. The event is
    /// dropped when a stop, a seek or another file comes first. A handler may call any function.
    std::function<void(PlayState)> PlayStateChange;

    /// Raised when more is known of the loaded file than the engine could say in time: its kind
    /// after a setURL that returned without, its tags and exact length after isReadOnlyItem said
    /// True of a mere estimate. May be raised more often, never for another file.
    std::function<void()> MediaChange;

    /// Raised once when a loaded file can't be played, or can't be played on: it is no MP3 file,
    /// it can't be read, or there is no sound device or no thread to be had. The engine is silent
    /// then, and the file stays loaded until setURL. Each further play tries again.
    std::function<void()> MediaError;
};

/// Runs functions on the user-interface thread later, in the order of the calls. May be called on
/// any thread.
using PostToUserInterface = std::function<void(std::function<void()>)>;

/// Creates the real engine: libmpg123 decodes, libpulse or SDL2 plays. Never null.
std::unique_ptr<PlayerEngine> createPlayerEngine(PostToUserInterface post);

} // namespace zvonivec
