#include "controls/MsgBox.h"

#include "controls/Form.h"
#include "platform/modDeklarace.h"

namespace zvonivec {

static_assert(vbInformation == modDeklarace::ICON_INFORMATION);

void ModalMessageBoxes::MsgBox(const std::string& text, int style, const std::string& title) {
    modDeklarace::MessageBoxA(owner_ != nullptr ? owner_->hWnd() : 0, text, title, style);
}

} // namespace zvonivec
