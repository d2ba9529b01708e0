// The program's own dialog for choosing a file, for desktops without one.
#pragma once

#include "controls/private/folder_model.h"
#include "platform/folder_listing.h"

#include <QDialog>
#include <memory>
#include <optional>
#include <string>

class QComboBox;
class QLabel;
class QLineEdit;
class QTreeView;

namespace zvonivec {

/// Lists folders by the names and the status of their files, changes nothing on the disk, and keeps
/// nothing behind when it is closed. Names that aren't UTF-8 are shown with guessed letters.
class OpenDialog : public QDialog {
public:
    struct Options {
        QString title;
        std::string folder;
        /// Names of filters and their patterns in turn; the first pair is preselected.
        QStringList filters;
        bool mustExist = false;
    };

    OpenDialog(QWidget* parent, const Options& options);

    /// Returns the full path of the chosen file after exec has returned Accepted.
    [[nodiscard]] const std::string& chosen() const { return chosen_; }

protected:
    void accept() override;

private:
    void goTo(const std::string& folder);
    void goUp();
    void activate(const QModelIndex& index);
    void takeName(const QModelIndex& index);
    void setPatterns(int filter);
    void addEntries(std::vector<FolderListing::Entry> entries);
    void fitColumns();
    /// Chooses a typed path or goes to it, whatever it turns out to be.
    void resolve(const std::string& path);
    void choose(const std::string& path);
    void say(const QString& message);
    [[nodiscard]] std::string pathOf(const std::string& name) const;

    const Options options_;
    std::string folder_; ///< the folder that is shown, without a separator at its end
    std::string chosen_;
    /// The selected file and its name in the input line. A name that isn't UTF-8 can't be typed.
    std::optional<std::string> selected_;

    FolderModel model_;
    QLineEdit* folderLine_ = nullptr;
    QTreeView* list_ = nullptr;
    QLineEdit* nameLine_ = nullptr;
    QComboBox* filterBox_ = nullptr;
    QLabel* message_ = nullptr;
    std::unique_ptr<FolderListing> listing_;
    std::unique_ptr<FolderListing> question_; ///< what a typed path leads to
};

} // namespace zvonivec
