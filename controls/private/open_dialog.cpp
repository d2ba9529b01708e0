#include "controls/private/open_dialog.h"

#include "controls/Application.h"
#include "platform/file_names.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QStandardPaths>
#include <QStyle>
#include <QToolButton>
#include <QTreeView>
#include <algorithm>
#include <utility>

namespace zvonivec {

namespace {

QString shownText(const std::string& path) {
    return QString::fromStdString(shownPath(path));
}

std::string withoutLastSeparator(std::string path) {
    while (path.ends_with('/')) {
        path.pop_back();
    }
    return path;
}

/// Returns the path of a typed text: "~" is the home folder.
std::string typedPath(const QString& text) {
    const bool isInHome = text == u'~' || text.startsWith(QStringLiteral("~/"));
    return (isInHome ? QDir::homePath() + text.mid(1) : text).toStdString();
}

QLabel* labelOf(const QString& text, QWidget* buddy) {
    auto* label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

} // namespace

OpenDialog::OpenDialog(QWidget* parent, const Options& options)
    : QDialog(parent), options_(options) {
    setWindowTitle(options.title);

    folderLine_ = new QLineEdit;
    folderLine_->setObjectName(QStringLiteral("folder"));
    folderLine_->setReadOnly(true);
    folderLine_->setFocusPolicy(Qt::ClickFocus);
    folderLine_->setAccessibleName(QStringLiteral("Složka"));

    const auto button = [this](QStyle::StandardPixmap icon, const QString& text) {
        auto* created = new QToolButton;
        created->setIcon(style()->standardIcon(icon));
        created->setToolTip(text);
        created->setAccessibleName(text);
        created->setAutoRaise(true);
        return created;
    };
    QToolButton* up = button(QStyle::SP_FileDialogToParent, QStringLiteral("Nadřazená složka"));
    up->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Up));
    connect(up, &QToolButton::clicked, this, [this] { goUp(); });
    QToolButton* home = button(QStyle::SP_DirHomeIcon, QStringLiteral("Domovská složka"));
    connect(home, &QToolButton::clicked, this, [this] { goTo(QDir::homePath().toStdString()); });
    QToolButton* computer = button(QStyle::SP_ComputerIcon, QStringLiteral("Počítač"));
    connect(computer, &QToolButton::clicked, this, [this] { goTo("/"); });

    list_ = new QTreeView;
    list_->setObjectName(QStringLiteral("files"));
    list_->setAccessibleName(QStringLiteral("Soubory"));
    list_->setModel(&model_);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAllColumnsShowFocus(true);
    list_->setSortingEnabled(true);
    list_->sortByColumn(FolderModel::name, Qt::AscendingOrder);
    list_->header()->setStretchLastSection(false);
    connect(list_, &QTreeView::activated, this,
            [this](const QModelIndex& index) { activate(index); });
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) { takeName(index); });
    auto* upByKey = new QShortcut(QKeySequence(Qt::Key_Backspace), list_);
    upByKey->setContext(Qt::WidgetShortcut);
    connect(upByKey, &QShortcut::activated, this, [this] { goUp(); });

    nameLine_ = new QLineEdit;
    nameLine_->setObjectName(QStringLiteral("name"));
    connect(nameLine_, &QLineEdit::textEdited, this, [this] {
        selected_.reset();
        say({});
    });
    filterBox_ = new QComboBox;
    filterBox_->setObjectName(QStringLiteral("fileTypeCombo"));
    for (qsizetype i = 0; i + 1 < options.filters.size(); i += 2) {
        filterBox_->addItem(options.filters[i]);
    }
    connect(filterBox_, &QComboBox::currentIndexChanged, this,
            [this](int filter) { setPatterns(filter); });
    message_ = new QLabel;
    message_->setObjectName(QStringLiteral("message"));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    buttons->button(QDialogButtonBox::Open)->setDefault(true);

    auto* top = new QHBoxLayout;
    top->addWidget(up);
    top->addWidget(home);
    top->addWidget(computer);
    top->addWidget(folderLine_, 1);
    auto* layout = new QGridLayout(this);
    layout->addLayout(top, 0, 0, 1, 2);
    layout->addWidget(list_, 1, 0, 1, 2);
    layout->addWidget(labelOf(QStringLiteral("&Název souboru:"), nameLine_), 2, 0);
    layout->addWidget(nameLine_, 2, 1);
    layout->addWidget(labelOf(QStringLiteral("&Typ souborů:"), filterBox_), 3, 0);
    layout->addWidget(filterBox_, 3, 1);
    layout->addWidget(message_, 4, 0, 1, 2);
    layout->addWidget(buttons, 5, 0, 1, 2);
    constexpr QSize usual(640, 440);
    resize(usual.boundedTo(screen()->availableSize()));

    setPatterns(0);
    goTo(options.folder);
    nameLine_->setFocus();
}

void OpenDialog::goTo(const std::string& folder) {
    question_.reset();
    selected_.reset();
    folder_ = withoutLastSeparator(folder);
    folderLine_->setText(shownText(folder_.empty() ? "/" : folder_));
    nameLine_->clear();
    say({});
    model_.clear();
    listing_ = std::make_unique<FolderListing>(
        pathOf({}),
        FolderListing::Events{.entries =
                                  [this](std::vector<FolderListing::Entry> entries) {
                                      addEntries(std::move(entries));
                                  },
                              .ended =
                                  [this](FolderListing::End end) {
                                      if (end != FolderListing::End::folder) {
                                          say(QStringLiteral("Složku nelze přečíst."));
                                      }
                                  }},
        Application::post);
}

void OpenDialog::goUp() {
    goTo(folder_.substr(0, folder_.rfind('/') == std::string::npos ? 0 : folder_.rfind('/')));
}

void OpenDialog::addEntries(std::vector<FolderListing::Entry> entries) {
    const QModelIndex current = list_->currentIndex();
    const std::string name = current.isValid() ? model_.entry(current).name : std::string();
    const int place = list_->verticalScrollBar()->value();
    model_.add(std::move(entries));
    if (const QModelIndex again = model_.indexOf(name); again.isValid()) {
        list_->setCurrentIndex(again);
    }
    list_->verticalScrollBar()->setValue(place);
    fitColumns();
}

void OpenDialog::setPatterns(int filter) {
    model_.setPatterns(options_.filters.value(2 * filter + 1));
    fitColumns();
}

/// Makes the columns as wide as their texts. The names get the rest of the width.
void OpenDialog::fitColumns() {
    int others = 0;
    for (const int column : {FolderModel::size, FolderModel::modified}) {
        list_->resizeColumnToContents(column);
        others += list_->columnWidth(column);
    }
    list_->resizeColumnToContents(FolderModel::name);
    const int room = list_->viewport()->width() - others;
    list_->setColumnWidth(FolderModel::name, std::max(list_->columnWidth(FolderModel::name), room));
}

void OpenDialog::takeName(const QModelIndex& index) {
    if (index.isValid() && !model_.entry(index).isFolder) {
        selected_ = model_.entry(index).name;
        nameLine_->setText(shownText(*selected_));
    }
}

void OpenDialog::activate(const QModelIndex& index) {
    const std::string path = pathOf(model_.entry(index).name);
    if (model_.entry(index).isFolder) {
        goTo(path);
    } else {
        choose(path);
    }
}

void OpenDialog::accept() {
    if (selected_) {
        choose(pathOf(*selected_));
    } else if (!nameLine_->text().isEmpty()) {
        const std::string typed = typedPath(nameLine_->text());
        resolve(typed.starts_with('/') ? typed : pathOf(typed));
    } else if (list_->currentIndex().isValid()) {
        activate(list_->currentIndex());
    }
}

void OpenDialog::resolve(const std::string& path) {
    question_ = std::make_unique<FolderListing>(
        path,
        FolderListing::Events{.entries = [](const std::vector<FolderListing::Entry>&) {},
                              .ended =
                                  [this, path](FolderListing::End end) {
                                      switch (end) {
                                      case FolderListing::End::folder:
                                      case FolderListing::End::unreadable:
                                          goTo(path);
                                          break;
                                      case FolderListing::End::nothing:
                                          if (options_.mustExist) {
                                              say(QStringLiteral("Soubor neexistuje."));
                                              break;
                                          }
                                          [[fallthrough]];
                                      case FolderListing::End::file:
                                          choose(path);
                                          break;
                                      }
                                  }},
        Application::post);
}

void OpenDialog::choose(const std::string& path) {
    chosen_ = path;
    QDialog::accept();
}

void OpenDialog::say(const QString& message) {
    message_->setText(message);
}

std::string OpenDialog::pathOf(const std::string& name) const {
    return folder_ + '/' + name;
}

} // namespace zvonivec
