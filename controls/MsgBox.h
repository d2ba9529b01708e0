// Message boxes.
#pragma once

#include <string>

namespace zvonivec {

class Form;

/// Numbers that a box's style is made of.
enum MsgBoxStyle : int { vbCritical = 16, vbInformation = 64 };

/// Shows message boxes; a test puts its own in place.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;

    /// Shows a box and returns when the user has closed it, or when the program ends meanwhile.
    /// Timers and the engine's events go on; the pointer does nothing to the program's windows.
    virtual void MsgBox(const std::string& text, int style, const std::string& title) = 0;
};

/// The real ones, in front of their owner: plain text, one OK button.
class ModalMessageBoxes : public MessageBoxes {
public:
    void setOwner(Form& owner) { owner_ = &owner; }
    void MsgBox(const std::string& text, int style, const std::string& title) override;

private:
    Form* owner_ = nullptr;
};

} // namespace zvonivec
