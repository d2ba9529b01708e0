// The main window: every control on it, every handler of theirs, and the state that they share.
//
// Each subsystem implements its own handlers in its own folder. Handlers call one another directly,
// with made-up arguments where the user's pointer isn't behind the call, so that every command has
// one implementation. Everything here runs on the user-interface thread.
//
// A handler that lets waiting events pass (DoEvents, a box, the dialog) may find the window
// unloaded, the file gone or the other look on afterwards; see passEvents.
#pragma once

#include "controls/Application.h"
#include "controls/CommonDialog.h"
#include "controls/Form.h"
#include "controls/Image.h"
#include "controls/Label.h"
#include "controls/MsgBox.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBar.h"
#include "controls/Timer.h"
#include "main_window/constants.h"
#include "playback/PlayerEngine.h"
#include "popup/frmPopup.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zvonivec {

class frmPlayer : public Form {
public:
    /// What the window works with and does not make itself. None may be null.
    struct Parts {
        std::unique_ptr<PlayerEngine> engine;
        std::unique_ptr<CommonDialog> dialog;
        std::unique_ptr<MessageBoxes> boxes;
        /// The folder that the program lies in.
        std::string programFolder;
    };

    explicit frmPlayer(Parts parts);
    ~frmPlayer() override;

    // --- Controls -----------------------------------------------------------------------------
    PictureBox picBGround;
    PictureBox picDisplay;
    Label lbl_Info;
    Label lbl_Info_SH;
    ImageList imgList;
    Timer Timer1;
    std::unique_ptr<CommonDialog> CD;
    ProgressBar PB;
    Image imgVolume;
    std::unique_ptr<PlayerEngine> WMP;
    Label lblStatus;
    Image imgLogo;
    Image imgDisplay_Mark;
    std::array<Image, BUTTON_COUNT> imgButtons;
    std::array<Label, 2> lblTime;

    /// The popup window, made at its first use.
    frmPopup& Popup();

    // --- Shared state -------------------------------------------------------------------------
    /// Index of the button that shows its hover picture, or NO_BUTTON.
    std::int16_t gHoverIndex = 0;
    /// From a left press on a button until the next release on one; no hover picture changes then.
    bool gButtonDown = false;
    /// A press on a button or the logo waits for its release.
    bool gClickArmed = false;
    /// The program has stopped the engine itself: the next stopped event is no end of a track.
    bool gUserStopped = false;

    // --- Start and end ------------------------------------------------------------------------
    void Form_Load();
    /// Ends the program: the popup, which saves the settings, is unloaded before this window.
    void CloseApplication();

    // --- Button strip and logo ----------------------------------------------------------------
    void imgButtons_MouseDown(std::int16_t Index, const MouseArgs& mouse);
    void imgButtons_MouseMove(std::int16_t Index, const MouseArgs& mouse);
    void imgButtons_MouseUp(std::int16_t Index, const MouseArgs& mouse);
    void Form_MouseMove(const MouseArgs& mouse);
    void imgLogo_MouseDown(const MouseArgs& mouse);
    void imgLogo_MouseUp(const MouseArgs& mouse);

    // --- Dragging and menu clicks -------------------------------------------------------------
    void Form_MouseDown(const MouseArgs& mouse);
    void Form_MouseUp(const MouseArgs& mouse);

    // --- Playback -----------------------------------------------------------------------------
    /// Lets the user choose a file and plays it; asks again after a file that is no MP3.
    void OpenMp3File();
    /// The playing look for the file that is loaded, or the idle look, which unloads it.
    void ShowPlayback(bool playing);
    void WMP_PlayStateChange(PlayState newState);
    void WMP_MediaError();
    void Timer1_Timer();
    void PB_MouseMove(const MouseArgs& mouse);
    void PB_MouseUp(const MouseArgs& mouse);
    void imgVolume_MouseUp(const MouseArgs& mouse);
    void lblStatus_MouseUp(const MouseArgs& mouse);

    // --- Track information --------------------------------------------------------------------
    /// The line of the display. Waits until the engine has measured the file.
    std::string BuildInfoLine();

    /// The properties of the file that is loaded, line by line. Waits as BuildInfoLine does.
    std::string BuildPropertiesText();
    void ShowPropertiesBox();
    void ShowAboutBox();

    // --- Menu ---------------------------------------------------------------------------------
    /// Shows the popup window at the pointer.
    void ShowPopupMenu();

    // --- Settings -----------------------------------------------------------------------------
    /// Applies what the file holds, value by value; what isn't there or can't be read leaves a
    /// default, what isn't a number changes nothing.
    void LoadSettings();
    /// Writes window position, switches and volume. Does nothing before LoadSettings has ended.
    void SaveSettings();

private:
    void Form_Unload() override;
    void Form_CloseRequest() override { CloseApplication(); }
    void Form_KeyDown(std::int16_t KeyCode) override;
    void Form_SightChanged(bool seen) override;

    void connectHandlers();
    void carryOut(std::int16_t Index);
    void stopAt(float barValue, const std::string& time);
    void showMark(std::int16_t Index, const std::string& toolTipText);
    void showVolume();
    void showPosition();
    void sendStripToTheRight();
    std::string RateLine();

    /// Lets waiting events pass. True when the look that `call` began is still the one to finish:
    /// no later ShowPlayback has taken over and the window is still loaded.
    bool passEvents(std::uint32_t call);

    std::unique_ptr<MessageBoxes> boxes_;
    std::string programFolder_;
    std::unique_ptr<frmPopup> popup_;
    std::uint32_t showPlaybackCalls_ = 0;
    bool opening_ = false;
    bool settingsLoaded_ = false;
};

} // namespace zvonivec
