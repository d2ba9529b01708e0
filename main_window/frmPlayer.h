// The main window: its controls, its handlers, and the state of both.
//
// The class is laid out by subsystem. Each section names the file that implements it, and lists the
// controls that are that file's own; other files reach them only through the handlers and routines
// listed there. Handlers call one another directly, with made-up arguments where no pointer is
// behind the call, so that every command has one implementation.
//
// Public are the controls, which the menu and tests look at, the routines that the subsystems and
// the menu call, and the two handlers that the menu calls. Everything here runs on the
// user-interface thread.
//
// A handler that lets waiting events pass (DoEvents, a box, the dialog) may find the window
// unloaded, the file gone or the other look shown afterwards; see passEvents.
#pragma once

#include "controls/Application.h"
#include "controls/CommonDialog.h"
#include "controls/Form.h"
#include "controls/Image.h"
#include "controls/Label.h"
#include "controls/MsgBox.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBar.h"
#include "controls/SlidingBox.h"
#include "controls/Timer.h"
#include "main_window/constants.h"
#include "playback/PlayerEngine.h"
#include "popup/frmPopup.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zvonivec {

class frmPlayer : public Form {
public:
    /// Objects that the window uses but doesn't create. None may be null.
    struct Parts {
        std::unique_ptr<PlayerEngine> engine;
        std::unique_ptr<CommonDialog> dialog;
        std::unique_ptr<MessageBoxes> boxes;
        /// The program's own folder.
        std::string programFolder;
    };

    explicit frmPlayer(Parts parts);
    ~frmPlayer() override;

    // --- Start and end: start_up.cpp, frmPlayer.cpp ---------------------------------------------
    ImageList imgList;
    std::unique_ptr<PlayerEngine> WMP;

    void Form_Load();
    /// Ends the program: the popup, which saves the settings, is unloaded before this window.
    void CloseApplication();

    // --- The two looks: playback/show_playback.cpp ----------------------------------------------
    PictureBox picBGround;
    SlidingBox picDisplay;
    Label lbl_Info;
    Label lbl_Info_SH;

    /// Shows the playing look for the file that is loaded, or the idle look, which unloads it.
    void ShowPlayback(bool playing);

    // --- Opening a file: playback/open_file.cpp -------------------------------------------------
    std::unique_ptr<CommonDialog> CD;

    /// Lets the user choose a file and plays it; asks again after a file that is no MP3.
    void OpenMp3File();
    /// Plays a file that comes from elsewhere, or refuses it as OpenMp3File does.
    void OpenGivenFile(const std::string& path);

    // --- Volume: playback/volume.cpp ------------------------------------------------------------
    Image imgVolume;
    Label lblStatus;

    void imgVolume_MouseUp(const MouseArgs& mouse);
    /// Sets the volume in percent.
    void SetVolume(std::int32_t percent);

    // --- Button strip and logo: button_strip.cpp ------------------------------------------------
    Image imgLogo;
    /// The mark of the last command; playback/ shows marks of its own with showMark.
    Image imgDisplay_Mark;
    std::array<Image, BUTTON_COUNT> imgButtons;

    /// Index of the button that shows its hover picture, or NO_BUTTON.
    std::int16_t gHoverIndex = 0;
    /// True from a left press on a button until the next release on a button. Pictures don't change
    /// under the pointer meanwhile.
    bool gButtonDown = false;
    /// A press on a button or the logo, or the menu, has armed the release handlers.
    bool gClickArmed = false;

    void imgButtons_MouseUp(std::int16_t Index, const MouseArgs& mouse);
    /// Does what a click on the button does.
    void PressButton(std::int16_t Index);

    // --- The desktop's controls: media_control.cpp ----------------------------------------------
    /// Raised when a file, its state, the volume or the repeat switch has changed.
    std::function<void()> StateChanged;
    /// Raised when the user has sought.
    std::function<void()> PositionJumped;
    void ReportState();

    // --- The engine's events: playback/play_events.cpp ------------------------------------------
    /// The program has stopped the engine itself: the next stopped event is no end of a track.
    bool gUserStopped = false;

    // --- Position and seeking: playback/position_display.cpp ------------------------------------
    Timer Timer1;
    ProgressBar PB;
    std::array<Label, 2> lblTime;

    /// Seeks as a release on the bar does. Does nothing without a file.
    void SeekTo(double seconds);
    /// Seeks from the position that the bar shows.
    void SeekBy(double seconds);

    // --- Track information: track_info/ ---------------------------------------------------------
    /// Returns the line of the display. Waits until the engine has measured the file.
    std::string BuildInfoLine();
    /// Returns the properties of the loaded file, line by line. Waits as BuildInfoLine does.
    std::string BuildPropertiesText();
    void ShowPropertiesBox();
    void ShowAboutBox();

    // --- Menu: popup/commands.cpp ---------------------------------------------------------------
    /// Returns the popup window, which is created at its first use.
    frmPopup& Popup();
    /// Shows the popup window at the pointer.
    void ShowPopupMenu();
    /// Shows the popup window at the focused control, or in this window's middle, with its first
    /// item lit.
    void ShowPopupMenuForKeyboard();

    // --- Settings: settings/settings.cpp --------------------------------------------------------
    /// Applies the settings file, value by value. A missing or unreadable value gets its default; a
    /// value that is no number changes nothing.
    void LoadSettings();
    /// Writes the window's position, the switches and the volume. Does nothing before LoadSettings
    /// has ended.
    void SaveSettings();

private:
    // --- Start and end --------------------------------------------------------------------------
    std::string programFolder_; ///< for Form_Load and the settings
    std::unique_ptr<MessageBoxes> boxes_;
    std::unique_ptr<frmPopup> popup_; ///< for Popup

    void connectHandlers();
    /// Connects the wheel, dropped files and assistive technology.
    void connectOtherWays();
    void Form_Unload() override;
    void Form_CloseRequest() override { CloseApplication(); }
    bool Form_KeyDown(const KeyArgs& key) override;
    void Form_SightChanged(bool seen) override;

    // --- The two looks --------------------------------------------------------------------------
    std::uint32_t showPlaybackCalls_ = 0; ///< the number of the newest call

    void sendStripToTheRight();
    /// Lets waiting events pass. Returns True when `call` is still the newest call of ShowPlayback
    /// and the window is still loaded; otherwise the caller leaves everything alone.
    bool passEvents(std::uint32_t call);

    // --- Opening a file -------------------------------------------------------------------------
    bool opening_ = false; ///< OpenMp3File, OpenGivenFile or takeAwaitedFile is running

    /// A file on a slow disk is loaded, and the window is idle until its kind is known.
    enum class Awaited { nothing, chosen, given };
    Awaited awaited_ = Awaited::nothing;

    /// Plays a file and returns False, or shows the box that refuses it. Returns False too for a
    /// slow file, which is awaited.
    bool refuses(const std::string& path, Awaited ifSlow);
    /// Plays or refuses the loaded file, whose kind is known.
    bool refusesLoadedFile();
    /// Plays or refuses the awaited file, if its kind is known by now.
    void takeAwaitedFile();
    void Form_FileDropped(const std::string& path) override;

    // --- Volume ---------------------------------------------------------------------------------
    void lblStatus_MouseUp(const MouseArgs& mouse);
    void showVolume();

    // --- Button strip and logo ------------------------------------------------------------------
    void imgButtons_MouseDown(std::int16_t Index, const MouseArgs& mouse);
    void imgButtons_MouseMove(std::int16_t Index, const MouseArgs& mouse);
    void Form_MouseMove(const MouseArgs& mouse);
    /// Ends a press without its command.
    void imgButtons_PressCancelled(std::int16_t Index);
    void imgLogo_MouseDown(const MouseArgs& mouse);
    void imgLogo_MouseUp(const MouseArgs& mouse);
    void carryOut(std::int16_t Index);
    void stopAt(float barValue, const std::string& time);
    void showMark(std::int16_t Index, const std::string& toolTipText);

    // --- Dragging and menu clicks: dragging.cpp -------------------------------------------------
    void Form_MouseDown(const MouseArgs& mouse);
    void Form_MouseUp(const MouseArgs& mouse);

    // --- Keyboard: keyboard.cpp -----------------------------------------------------------------
    void stepVolume(bool up);
    bool plainKey(std::int16_t KeyCode);
    bool controlKey(std::int16_t KeyCode);
    bool focusedControlKey(Control& focused, std::int16_t KeyCode);

    // --- The engine's events --------------------------------------------------------------------
    void WMP_PlayStateChange(PlayState newState);
    void trackHasStopped();
    void WMP_MediaChange();
    void WMP_MediaError();

    // --- Position and seeking -------------------------------------------------------------------
    void Timer1_Timer();
    void PB_MouseMove(const MouseArgs& mouse);
    void PB_MouseUp(const MouseArgs& mouse);
    void showPosition();

    // --- Track information ----------------------------------------------------------------------
    std::string RateLine();
    void showInfoLine(const std::string& text);
    void showLength();

    // --- Settings -------------------------------------------------------------------------------
    bool settingsLoaded_ = false; ///< LoadSettings has ended
};

} // namespace zvonivec
