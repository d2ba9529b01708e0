// The popup window: the program's menu.
#pragma once

#include "controls/CheckBox.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"

#include <array>
#include <cstddef>

namespace zvonivec {

/// The two switches. Their state is the check box's Value and nothing else.
enum PopupSwitch : std::size_t { popupOnTop = 0, popupRepeat = 1 };

/// Menu items by their command number, which is not their order on the screen.
enum PopupItem : std::size_t { itemProperties = 1, itemRewind = 4, itemForward = 8 };

inline constexpr std::size_t POPUP_ITEM_COUNT = 15;

class frmPopup : public Form {
public:
    frmPopup();

    PictureBox picPopup;
    std::array<CheckBox, 2> chkPopup;
    std::array<Label, POPUP_ITEM_COUNT> lblPopup;

    /// Colours the items that need a file: ENABLED_ITEM_COLOR or DISABLED_ITEM_COLOR.
    void setFileItemsColor(Color color);
    /// Item 1's colour is where the program keeps whether a file is loaded.
    [[nodiscard]] bool fileIsLoaded() const;

private:
    /// Asked to close by the window system, the menu goes with the program only.
    void Form_CloseRequest() override { setVisible(false); }
};

} // namespace zvonivec
