// The files of a folder as a table.
#pragma once

#include "platform/folder_listing.h"

#include <QAbstractTableModel>
#include <QCollator>
#include <QIcon>
#include <QRegularExpression>
#include <string>
#include <vector>

namespace zvonivec {

/// Folders come before files, and of the files those whose names match a pattern.
class FolderModel : public QAbstractTableModel {
public:
    enum Column { name, size, modified };
    static constexpr int COLUMNS = modified + 1;

    FolderModel();

    void clear();
    void add(std::vector<FolderListing::Entry> entries);
    /// Sets patterns such as "*.mp3", separated by blanks. Case doesn't matter.
    void setPatterns(const QString& patterns);

    [[nodiscard]] const FolderListing::Entry& entry(const QModelIndex& index) const;
    /// Returns the index of a name, or an invalid index.
    [[nodiscard]] QModelIndex indexOf(const std::string& name) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    struct Row {
        FolderListing::Entry entry;
        QString shown;
    };
    void arrange();
    [[nodiscard]] bool isBefore(const Row& a, const Row& b) const;

    std::vector<Row> rows_;
    std::vector<std::size_t> visible_; ///< indexes of rows_, in the order of the view
    QRegularExpression pattern_;
    QCollator collator_;
    QIcon folderIcon_;
    QIcon fileIcon_;
    int sortColumn_ = name;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

} // namespace zvonivec
