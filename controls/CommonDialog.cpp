#include "controls/CommonDialog.h"

#include "controls/Form.h"
#include "controls/private/open_dialog.h"
#include "platform/desktop_dialogs.h"
#include "platform/dialog_end.h"
#include "platform/memory_return.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>
#include <filesystem>
#include <memory>
#include <system_error>

namespace zvonivec {

namespace {

/// Returns the filters in the toolkit's form. The toolkit hides the last pair of brackets in a
/// filter, so the patterns get brackets of their own and the names keep theirs. Some desktops'
/// dialogs distinguish capital and small letters, so each pattern appears in both. "*.*" means
/// every file, even a file without a dot in its name.
QStringList nameFilters(const std::string& filter) {
    const QStringList parts = QString::fromStdString(filter).split(u'|', Qt::SkipEmptyParts);
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString& pattern = parts[i + 1];
        const QString patterns = pattern == QStringLiteral("*.*")
                                     ? QStringLiteral("*")
                                     : pattern + u' ' + pattern.toUpper();
        filters.append(QStringLiteral("%1 (%2)").arg(parts[i], patterns));
    }
    return filters;
}

std::string toPath(const QString& path) {
    return QDir::toNativeSeparators(path).toStdString();
}

QString fromPath(const std::string& path) {
    return QString::fromStdString(path);
}

bool isFolder(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(std::u8string(path.begin(), path.end()), error);
}

bool isFile(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(std::u8string(path.begin(), path.end()), error);
}

/// Returns the folder of a file, or an empty text for a path that has none.
std::string folderOf(const std::string& path) {
    const std::filesystem::path file(std::u8string(path.begin(), path.end()));
    const std::u8string folder = file.parent_path().u8string();
    return {folder.begin(), folder.end()};
}

} // namespace

std::string SystemDialog::startFolder() const {
    if (isFolder(InitDir)) {
        return InitDir + "/"; // for a drive, its root
    }
    const bool chosenBefore = !lastChosen_.empty() && InitDir == lastChosen_;
    if ((isFile(InitDir) || chosenBefore) && isFolder(folderOf(InitDir))) {
        return folderOf(InitDir);
    }
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    return toPath(QFileInfo(music).isDir() ? music : QDir::homePath());
}

std::optional<std::string> SystemDialog::ShowOpen() {
    QWidget* owner = owner_ != nullptr ? QWidget::find(owner_->hWnd()) : nullptr;
    bool shown = false;
    std::optional<std::string> chosen;
    if (desktopMayHaveFileDialogs()) {
        chosen = showDesktopsDialog(owner, shown);
    }
    if (!shown) {
        const MemoryReturn giveBack;
        OpenDialog dialog(
            owner, {.title = QString::fromStdString(DialogTitle),
                    .folder = startFolder(),
                    .filters = QString::fromStdString(Filter).split(u'|', Qt::SkipEmptyParts),
                    .mustExist = (Flags & fileMustExist) != 0});
        if (dialog.exec() == QDialog::Accepted) {
            chosen = dialog.chosen();
        }
    }
    if (chosen) {
        lastChosen_ = *chosen;
    }
    return chosen;
}

std::optional<std::string> SystemDialog::showDesktopsDialog(QWidget* owner, bool& shown) const {
    const std::unique_ptr<QFileDialog, DialogEnd> dialog(
        new QFileDialog(owner, QString::fromStdString(DialogTitle), fromPath(startFolder())));
    // The toolkit gives its own dialog widgets, and the desktop's none.
    if (dialog->findChild<QWidget*>() != nullptr) {
        return std::nullopt;
    }
    shown = true;
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode((Flags & fileMustExist) != 0 ? QFileDialog::ExistingFile
                                                     : QFileDialog::AnyFile);
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    dialog->setNameFilters(nameFilters(Filter));
    if (dialog->exec() != QDialog::Accepted || dialog->selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return toPath(dialog->selectedFiles().constFirst());
}

} // namespace zvonivec
