#include "controls/private/folder_model.h"

#include "platform/file_names.h"

#include <QApplication>
#include <QDateTime>
#include <QLocale>
#include <QStyle>
#include <algorithm>
#include <utility>

namespace zvonivec {

namespace {

/// Returns a pattern for any name that matches one of the patterns as a whole.
QRegularExpression expressionOf(const QString& patterns) {
    QStringList expressions;
    for (const QString& pattern : patterns.split(u' ', Qt::SkipEmptyParts)) {
        expressions.append(pattern == QStringLiteral("*.*")
                               ? QStringLiteral(".*") // every file, even one without a dot
                               : QRegularExpression::wildcardToRegularExpression(
                                     pattern, QRegularExpression::UnanchoredWildcardConversion));
    }
    return QRegularExpression(QStringLiteral("\\A(?:%1)\\z").arg(expressions.join(u'|')),
                              QRegularExpression::CaseInsensitiveOption |
                                  QRegularExpression::DotMatchesEverythingOption);
}

} // namespace

FolderModel::FolderModel()
    : collator_(QLocale(QLocale::Czech)),
      folderIcon_(QApplication::style()->standardIcon(QStyle::SP_DirIcon)),
      fileIcon_(QApplication::style()->standardIcon(QStyle::SP_FileIcon)) {
    collator_.setCaseSensitivity(Qt::CaseInsensitive);
    collator_.setNumericMode(true);
}

void FolderModel::clear() {
    beginResetModel();
    rows_.clear();
    visible_.clear();
    endResetModel();
}

void FolderModel::add(std::vector<FolderListing::Entry> entries) {
    for (FolderListing::Entry& entry : entries) {
        QString shown = QString::fromStdString(shownPath(entry.name));
        rows_.push_back({std::move(entry), std::move(shown)});
    }
    arrange();
}

void FolderModel::setPatterns(const QString& patterns) {
    pattern_ = expressionOf(patterns);
    arrange();
}

void FolderModel::sort(int column, Qt::SortOrder order) {
    sortColumn_ = column;
    sortOrder_ = order;
    arrange();
}

void FolderModel::arrange() {
    beginResetModel();
    visible_.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (rows_[i].entry.isFolder || pattern_.match(rows_[i].shown).hasMatch()) {
            visible_.push_back(i);
        }
    }
    std::ranges::sort(
        visible_, [this](std::size_t a, std::size_t b) { return isBefore(rows_[a], rows_[b]); });
    endResetModel();
}

bool FolderModel::isBefore(const Row& a, const Row& b) const {
    if (a.entry.isFolder != b.entry.isFolder) {
        return a.entry.isFolder;
    }
    const bool falls = sortOrder_ == Qt::DescendingOrder;
    const FolderListing::Entry& low = falls ? b.entry : a.entry;
    const FolderListing::Entry& high = falls ? a.entry : b.entry;
    if (sortColumn_ == size && low.size != high.size) {
        return low.size < high.size;
    }
    if (sortColumn_ == modified && low.modified != high.modified) {
        return low.modified < high.modified;
    }
    const int order =
        falls ? collator_.compare(b.shown, a.shown) : collator_.compare(a.shown, b.shown);
    return order != 0 ? order < 0 : low.name < high.name;
}

const FolderListing::Entry& FolderModel::entry(const QModelIndex& index) const {
    return rows_[visible_[static_cast<std::size_t>(index.row())]].entry;
}

QModelIndex FolderModel::indexOf(const std::string& wanted) const {
    const auto found = std::ranges::find_if(
        visible_, [&](std::size_t row) { return rows_[row].entry.name == wanted; });
    return found == visible_.end() ? QModelIndex()
                                   : index(static_cast<int>(found - visible_.begin()), 0);
}

int FolderModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(visible_.size());
}

int FolderModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : COLUMNS;
}

QVariant FolderModel::data(const QModelIndex& index, int role) const {
    const Row& row = rows_[visible_[static_cast<std::size_t>(index.row())]];
    if (role == Qt::TextAlignmentRole && index.column() == size) {
        return {Qt::AlignRight | Qt::AlignVCenter};
    }
    if (role == Qt::DecorationRole && index.column() == name) {
        return row.entry.isFolder ? folderIcon_ : fileIcon_;
    }
    if (role == Qt::ToolTipRole && index.column() == name) {
        return row.shown.toHtmlEscaped();
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (index.column()) {
    case name:
        return row.shown;
    case size:
        return row.entry.isFolder
                   ? QString()
                   : QLocale::system().formattedDataSize(static_cast<qint64>(row.entry.size), 1);
    default:
        return QLocale::system().toString(QDateTime::fromSecsSinceEpoch(row.entry.modified),
                                          QLocale::ShortFormat);
    }
}

QVariant FolderModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case name:
        return QStringLiteral("Název");
    case size:
        return QStringLiteral("Velikost");
    default:
        return QStringLiteral("Změněno");
    }
}

} // namespace zvonivec
