// Message boxes.
#pragma once

#include <string>

namespace zvonivec {

class Form;

/// Flags of a box's style.
enum MsgBoxStyle : int { vbCritical = 16, vbInformation = 64 };

/// Shows message boxes. Tests derive message boxes that only record.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;

    /// Shows a box. Returns when the user has closed it or the program has ended. Timers and the
    /// engine's events go on, but the program's windows take no pointer events.
    virtual void MsgBox(const std::string& text, int style, const std::string& title) = 0;
};

/// The real message boxes, in front of their owner: plain text and an OK button.
class ModalMessageBoxes : public MessageBoxes {
public:
    void setOwner(Form& owner) { owner_ = &owner; }
    void MsgBox(const std::string& text, int style, const std::string& title) override;

private:
    Form* owner_ = nullptr;
};

} // namespace zvonivec
