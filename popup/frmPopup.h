// The popup window: the program's menu.
//
// It is loaded with the main window, shown at the pointer and hidden again. What an item does, the
// main window's handlers do: the menu calls them with made-up arguments.
#pragma once

#include "controls/CheckBox.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"
#include "platform/outside_presses.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace zvonivec {

class frmPlayer;

/// The two switches. Their state is the check box's Value and nothing else.
enum PopupSwitch : std::int16_t { popupOnTop = 0, popupRepeat = 1 };

/// Menu items by their command number, which is not their order on the screen.
enum PopupItem : std::int16_t {
    itemOpen = 0,
    itemProperties = 1,
    itemFirstSeparator = 2,
    itemSecondSeparator = 3,
    itemRewind = 4, ///< up to itemForward: the button strip's first five, in its order
    itemForward = 8,
    itemThirdSeparator = 9,
    itemAbout = 10,
    itemMinimise = 11,
    itemQuit = 12,
    itemVolumeUp = 13,
    itemVolumeDown = 14,
};

inline constexpr std::size_t POPUP_ITEM_COUNT = 15;

class frmPopup : public Form {
public:
    /// The player outlives its menu.
    explicit frmPopup(frmPlayer& player);

    PictureBox picPopup;
    std::array<CheckBox, 2> chkPopup;
    std::array<Label, POPUP_ITEM_COUNT> lblPopup;

    /// Colours the items that need a file: ENABLED_ITEM_COLOR or DISABLED_ITEM_COLOR.
    void setFileItemsColour(Colour colour);
    /// Item 1's colour is where the program keeps whether a file is loaded.
    [[nodiscard]] bool fileIsLoaded() const;

    /// Shows the menu, its upper left corner at a place on the screen in twips.
    void showAt(float left, float top);
    /// Hides the menu and puts the main window back above the others, if that is switched on. Lets
    /// waiting events pass.
    void Form_Deactivate() override;

    void chkPopup_Click(std::int16_t Index);
    void chkPopup_MouseMove(std::int16_t Index, const MouseArgs& mouse);
    void lblPopup_Click(std::int16_t Index);
    void lblPopup_MouseMove(std::int16_t Index, const MouseArgs& mouse);

private:
    void Form_KeyDown(std::int16_t KeyCode) override;
    void Form_QueryUnload() override;
    /// Asked to close by the window system, the menu goes with the program only.
    void Form_CloseRequest() override { Form_Deactivate(); }

    void connectHandlers();
    /// Whether an item does anything: it is no separator and not dimmed.
    [[nodiscard]] bool isAvailable(std::int16_t Index) const;
    void clearHighlight();
    void placeMainWindowInStack();
    void carryOut(std::int16_t Index);

    frmPlayer& player_;
    std::unique_ptr<OutsidePresses> outsidePresses_; ///< while the menu is shown
};

} // namespace zvonivec
