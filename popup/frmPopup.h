// The popup window: the program's menu.
//
// The window is loaded with the main window, shown at the pointer and hidden again. The main
// window's handlers carry out its commands: the menu calls them with made-up arguments.
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
#include <string>
#include <vector>

namespace zvonivec {

class frmPlayer;

/// The two switches. The check box's Value is their only state.
enum PopupSwitch : std::int16_t { popupOnTop = 0, popupRepeat = 1 };

/// Menu items by command number, which differs from their order on the screen.
enum PopupItem : std::int16_t {
    itemOpen = 0,
    itemProperties = 1,
    itemFirstSeparator = 2,
    itemSecondSeparator = 3,
    itemRewind = 4, ///< itemRewind to itemForward are buttons 0 to 4 of the strip
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
    /// The player must outlive its menu.
    explicit frmPopup(frmPlayer& player);

    PictureBox picPopup;
    std::array<CheckBox, 2> chkPopup;
    std::array<Label, POPUP_ITEM_COUNT> lblPopup;

    /// Sets the colour of the items that need a file to ENABLED_ITEM_COLOR or DISABLED_ITEM_COLOR.
    void setFileItemsColour(Colour colour);
    /// Returns whether a file is loaded, which item 1's colour records.
    [[nodiscard]] bool fileIsLoaded() const;

    /// Shows the menu with its upper left corner at a place on the screen, in twips.
    void showAt(float left, float top);
    /// Hides the menu and makes the main window topmost again, if that is switched on. Lets waiting
    /// events pass.
    void Form_Deactivate() override;

    /// Lights the first entry.
    void lightFirst();
    /// Takes the keys of both windows while the menu is shown.
    bool Form_KeyDown(const KeyArgs& key) override;

    void chkPopup_Click(std::int16_t Index);
    void chkPopup_MouseMove(std::int16_t Index, const MouseArgs& mouse);
    void lblPopup_Click(std::int16_t Index);
    void lblPopup_MouseMove(std::int16_t Index, const MouseArgs& mouse);

private:
    void Form_QueryUnload() override;
    /// A close request of the window system hides the menu; only the program's end unloads it.
    void Form_CloseRequest() override { Form_Deactivate(); }

    void connectHandlers();
    /// Returns whether there is such an item and a click on it has an effect: it is neither a
    /// separator nor dimmed.
    [[nodiscard]] bool isAvailable(std::int16_t Index) const;
    void clearHighlight();

    /// A line of the menu that the keyboard goes through.
    struct Entry {
        bool isSwitch = false;
        std::int16_t Index = 0;
    };
    /// Returns the available entries from top to bottom.
    [[nodiscard]] std::vector<Entry> entries() const;
    [[nodiscard]] const Control& controlOf(Entry entry) const;
    [[nodiscard]] const std::string& captionOf(Entry entry) const;
    void light(Entry entry);
    void choose(Entry entry);

    void placeMainWindowInStack();
    void carryOut(std::int16_t Index);

    frmPlayer& player_;
    std::unique_ptr<OutsidePresses> outsidePresses_; ///< while the menu is shown
};

} // namespace zvonivec
