// The system's dialog for choosing a file to open.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

class QWidget;

namespace zvonivec {

class Form;

/// A dialog with its settings. Tests derive dialogs that answer by themselves.
class CommonDialog {
public:
    enum Flags : std::uint32_t { hideReadOnly = 0x4, fileMustExist = 0x1000 };

    virtual ~CommonDialog() = default;

    std::string Filter; ///< "name|patterns|name|patterns|", the first pair is preselected
    std::string DialogTitle;
    std::uint32_t Flags = 0;
    /// A folder, or a file whose folder the dialog opens in. When there is no such folder or file,
    /// the dialog opens in the user's music folder.
    std::string InitDir;

    /// Returns the full path of the chosen file, or nothing when the user has cancelled.
    virtual std::optional<std::string> ShowOpen() = 0;
};

/// The desktop's own dialog, or the program's on desktops without a dialog.
class SystemDialog : public CommonDialog {
public:
    void setOwner(Form& owner) { owner_ = &owner; }
    std::optional<std::string> ShowOpen() override;

private:
    [[nodiscard]] std::string startFolder() const;
    /// Shows the desktop's own dialog if it has one, and reports that in the last argument.
    std::optional<std::string> showDesktopsDialog(QWidget* owner, bool& shown) const;

    Form* owner_ = nullptr;
    std::string lastChosen_; ///< its folder is used even when the file is gone
};

} // namespace zvonivec
