// The menu's keys. They light and choose entries as the pointer does.

#include "popup/frmPopup.h"

#include "main_window/constants.h"

#include <algorithm>
#include <cstddef>

namespace zvonivec {

std::vector<frmPopup::Entry> frmPopup::entries() const {
    std::vector<Entry> all;
    for (std::int16_t i = 0; i < static_cast<std::int16_t>(chkPopup.size()); ++i) {
        all.push_back({.isSwitch = true, .Index = i});
    }
    for (std::int16_t i = 0; i < static_cast<std::int16_t>(POPUP_ITEM_COUNT); ++i) {
        if (isAvailable(i)) {
            all.push_back({.isSwitch = false, .Index = i});
        }
    }
    std::ranges::sort(all, {}, [this](Entry entry) { return controlOf(entry).Top(); });
    return all;
}

const Control& frmPopup::controlOf(Entry entry) const {
    const auto index = static_cast<std::size_t>(entry.Index);
    if (entry.isSwitch) {
        return chkPopup[index];
    }
    return lblPopup[index];
}

const std::string& frmPopup::captionOf(Entry entry) const {
    const auto index = static_cast<std::size_t>(entry.Index);
    return entry.isSwitch ? chkPopup[index].Caption() : lblPopup[index].Caption();
}

void frmPopup::light(Entry entry) {
    if (entry.isSwitch) {
        chkPopup_MouseMove(entry.Index, {});
    } else {
        lblPopup_MouseMove(entry.Index, {});
    }
}

void frmPopup::choose(Entry entry) {
    if (entry.isSwitch) {
        chkPopup[static_cast<std::size_t>(entry.Index)].press();
    } else {
        lblPopup_Click(entry.Index);
    }
}

void frmPopup::lightFirst() {
    light(entries().front());
}

bool frmPopup::Form_KeyDown(const KeyArgs& key) {
    if (!Visible()) {
        return false;
    }
    const std::vector<Entry> all = entries();
    const auto count = static_cast<std::ptrdiff_t>(all.size());
    const std::ptrdiff_t lit =
        std::ranges::find(all, HIGHLIGHT_BACK_COLOR,
                          [this](Entry entry) { return controlOf(entry).BackColor(); }) -
        all.begin();
    const bool anyIsLit = lit < count;
    const auto lightAt = [&](std::ptrdiff_t place) {
        light(all[static_cast<std::size_t>((place + count) % count)]);
    };

    switch (key.KeyCode) {
    case vbKeyEscape:
        Form_Deactivate();
        break;
    case vbKeyDown:
        lightAt(anyIsLit ? lit + 1 : 0);
        break;
    case vbKeyUp:
        lightAt(anyIsLit ? lit - 1 : -1);
        break;
    case vbKeyHome:
        lightAt(0);
        break;
    case vbKeyEnd:
        lightAt(-1);
        break;
    case vbKeyReturn:
    case vbKeySpace:
        if (anyIsLit && !key.Repeated) {
            choose(all[static_cast<std::size_t>(lit)]);
        }
        break;
    default:
        // Goes to the next entry that begins with the letter.
        for (std::ptrdiff_t step = 1; step <= count && !key.Letter.empty(); ++step) {
            const std::ptrdiff_t place = ((anyIsLit ? lit : -1) + step) % count;
            if (firstLetter(captionOf(all[static_cast<std::size_t>(place)])) == key.Letter) {
                lightAt(place);
                break;
            }
        }
        break;
    }
    return true;
}

} // namespace zvonivec
