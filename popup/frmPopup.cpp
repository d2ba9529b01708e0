// The menu as a window: its controls, showing and hiding, the highlight.

#include "popup/frmPopup.h"

#include "main_window/frmPlayer.h"
#include "platform/modDeklarace.h"
#include "popup/layout.h"

#include <string>
#include <utility>
#include <vector>

namespace zvonivec {

namespace {

template<std::size_t... Index>
std::array<Label, sizeof...(Index)> makeItems(Control& container,
                                              std::index_sequence<Index...> /*indices*/) {
    return {Label(container, "lblPopup_" + std::to_string(Index))...};
}

} // namespace

frmPopup::frmPopup(frmPlayer& player)
    : Form("frmPopup", Kind::popup, popup_layout::WINDOW_WIDTH, popup_layout::WINDOW_HEIGHT),
      picPopup(*this, "picPopup"), chkPopup{CheckBox(picPopup, "chkPopup_0"),
                                            CheckBox(picPopup, "chkPopup_1")},
      lblPopup(makeItems(picPopup, std::make_index_sequence<POPUP_ITEM_COUNT>())), player_(player) {
    setCaption("Nabídka"); // for assistive technology alone
    std::vector<Control*> controls{&picPopup, &chkPopup[0], &chkPopup[1]};
    for (Label& item : lblPopup) {
        controls.push_back(&item);
    }
    layOut(popup_layout::controls(), controls);
    setFileItemsColour(DISABLED_ITEM_COLOR); // as in the layout
    connectHandlers();
}

void frmPopup::connectHandlers() {
    for (std::int16_t i = 0; i < static_cast<std::int16_t>(chkPopup.size()); ++i) {
        CheckBox& box = chkPopup[static_cast<std::size_t>(i)];
        box.Click = [this, i] { chkPopup_Click(i); };
        box.MouseMove = [this, i](const MouseArgs& mouse) { chkPopup_MouseMove(i, mouse); };
    }
    for (std::int16_t i = 0; i < static_cast<std::int16_t>(lblPopup.size()); ++i) {
        Label& item = lblPopup[static_cast<std::size_t>(i)];
        item.Click = [this, i] { lblPopup_Click(i); };
        item.MouseMove = [this, i](const MouseArgs& mouse) { lblPopup_MouseMove(i, mouse); };
    }
}

void frmPopup::setFileItemsColour(Colour colour) {
    const auto set = [colour](Label& item) {
        item.setForeColor(colour);
        item.setAvailable(colour != DISABLED_ITEM_COLOR);
    };
    set(lblPopup[itemProperties]);
    for (std::size_t i = itemRewind; i <= itemForward; ++i) {
        set(lblPopup[i]);
    }
}

bool frmPopup::fileIsLoaded() const {
    return lblPopup[itemProperties].ForeColor() != DISABLED_ITEM_COLOR;
}

void frmPopup::showAt(float left, float top) {
    setLeft(left);
    setTop(top);
    if (chkPopup[popupOnTop].Value() == 1) {
        modDeklarace::SetWindowPos(player_.hWnd(), modDeklarace::INSERT_NOT_TOPMOST, 0, 0, 0, 0,
                                   modDeklarace::NO_SIZE_NO_MOVE);
    }
    // Watches before the menu is visible, so that no press elsewhere is missed.
    outsidePresses_ = std::make_unique<OutsidePresses>(hWnd(), [this] { Form_Deactivate(); });
    setVisible(true);
    bringToFront();
}

void frmPopup::Form_Deactivate() {
    outsidePresses_.reset();
    setVisible(false);
    clearHighlight();
    placeMainWindowInStack();
    DoEvents();
}

void frmPopup::placeMainWindowInStack() {
    const bool onTop = chkPopup[popupOnTop].Value() == 1;
    modDeklarace::SetWindowPos(
        player_.hWnd(), onTop ? modDeklarace::INSERT_TOPMOST : modDeklarace::INSERT_NOT_TOPMOST, 0,
        0, 0, 0, modDeklarace::NO_SIZE_NO_MOVE);
}

void frmPopup::Form_QueryUnload() {
    player_.SaveSettings();
}

void frmPopup::clearHighlight() {
    for (Label& item : lblPopup) {
        item.setBackColor(MENU_BACK_COLOR);
        item.setCurrent(false);
    }
    for (CheckBox& box : chkPopup) {
        box.setBackColor(MENU_BACK_COLOR);
        box.setCurrent(false);
    }
}

void frmPopup::lblPopup_MouseMove(std::int16_t Index, const MouseArgs& /*mouse*/) {
    if (!isAvailable(Index)) {
        return;
    }
    Label& item = lblPopup[static_cast<std::size_t>(Index)];
    if (item.BackColor() == HIGHLIGHT_BACK_COLOR) {
        return;
    }
    clearHighlight();
    item.setBackColor(HIGHLIGHT_BACK_COLOR);
    item.setCurrent(true);
}

void frmPopup::chkPopup_MouseMove(std::int16_t Index, const MouseArgs& /*mouse*/) {
    CheckBox& box = chkPopup[static_cast<std::size_t>(Index)];
    if (box.BackColor() == HIGHLIGHT_BACK_COLOR) {
        return;
    }
    clearHighlight();
    box.setBackColor(HIGHLIGHT_BACK_COLOR);
    box.setCurrent(true);
}

} // namespace zvonivec
