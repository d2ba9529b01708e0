#include "controls/CommonDialog.h"

#include "controls/Form.h"
#include "platform/dialog_end.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>
#include <memory>

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

} // namespace

std::string SystemDialog::startFolder() const {
    const QFileInfo start(fromPath(InitDir));
    if (start.isDir()) {
        return InitDir + "/"; // for a drive, its root
    }
    const bool chosenBefore = !lastChosen_.empty() && InitDir == lastChosen_;
    if ((start.isFile() || chosenBefore) && start.absoluteDir().exists()) {
        return toPath(start.absolutePath());
    }
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    return toPath(QFileInfo(music).isDir() ? music : QDir::homePath());
}

std::optional<std::string> SystemDialog::ShowOpen() {
    const std::unique_ptr<QFileDialog, DialogEnd> dialog(
        new QFileDialog(owner_ != nullptr ? QWidget::find(owner_->hWnd()) : nullptr,
                        QString::fromStdString(DialogTitle), fromPath(startFolder())));
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode((Flags & fileMustExist) != 0 ? QFileDialog::ExistingFile
                                                     : QFileDialog::AnyFile);
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    dialog->setNameFilters(nameFilters(Filter));
    if (dialog->exec() != QDialog::Accepted || dialog->selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    lastChosen_ = toPath(dialog->selectedFiles().constFirst());
    return lastChosen_;
}

} // namespace zvonivec
