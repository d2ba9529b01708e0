// The system's dialog in which the user chooses a file to open.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zvonivec {

class Form;

/// What the dialog is asked with. A test derives a dialog that answers by itself.
class CommonDialog {
public:
    enum Flags : std::uint32_t { hideReadOnly = 0x4, fileMustExist = 0x1000 };

    virtual ~CommonDialog() = default;

    std::string Filter; ///< "name|patterns|name|patterns|"; the first one is preselected
    std::string DialogTitle;
    std::uint32_t Flags = 0;
    /// A folder, or a file in whose folder the dialog opens. Where it names neither, the dialog
    /// opens among the user's music.
    std::string InitDir;

    /// The chosen file's full path; nothing when the user cancelled.
    virtual std::optional<std::string> ShowOpen() = 0;
};

/// The desktop's own dialog, where it has one.
class SystemDialog : public CommonDialog {
public:
    void setOwner(Form& owner) { owner_ = &owner; }
    std::optional<std::string> ShowOpen() override;

private:
    [[nodiscard]] std::string startFolder() const;

    Form* owner_ = nullptr;
    std::string lastChosen_; ///< its folder serves also when the file has gone since
};

} // namespace zvonivec
