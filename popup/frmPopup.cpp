#include "popup/frmPopup.h"

#include "main_window/constants.h"
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

frmPopup::frmPopup()
    : Form("frmPopup", Kind::popup, popup_layout::WINDOW_WIDTH, popup_layout::WINDOW_HEIGHT),
      picPopup(*this, "picPopup"), chkPopup{CheckBox(picPopup, "chkPopup_0"),
                                            CheckBox(picPopup, "chkPopup_1")},
      lblPopup(makeItems(picPopup, std::make_index_sequence<POPUP_ITEM_COUNT>())) {
    std::vector<Control*> controls{&picPopup, &chkPopup[0], &chkPopup[1]};
    for (Label& item : lblPopup) {
        controls.push_back(&item);
    }
    layOut(popup_layout::controls(), controls);
}

void frmPopup::setFileItemsColor(Color color) {
    lblPopup[itemProperties].setForeColor(color);
    for (std::size_t i = itemRewind; i <= itemForward; ++i) {
        lblPopup[i].setForeColor(color);
    }
}

bool frmPopup::fileIsLoaded() const {
    return lblPopup[itemProperties].ForeColor() != DISABLED_ITEM_COLOR;
}

} // namespace zvonivec
