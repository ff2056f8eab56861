#include "ui/table/file_table_model.h"

#include "ui/table/row_texts.h"

namespace sorvik {

FileTableModel::FileTableModel(FileProcessingViewModel& list, QObject* parent)
    : QAbstractTableModel(parent), list_(list), rows_(static_cast<int>(list.files().size())) {
    connect(&list, &FileProcessingViewModel::filesInserted, this, &FileTableModel::insertFiles);
    connect(&list, &FileProcessingViewModel::fileChanged, this, &FileTableModel::changeRow);
    connect(&list, &FileProcessingViewModel::allFilesChanged, this, &FileTableModel::changeAll);
    connect(&list, &FileProcessingViewModel::filesReset, this, &FileTableModel::reset);
    convertingObserver_ = list.isConverting.addNotifier([this] { changeAll(); });
}

int FileTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int FileTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(fileColumns.size());
}

const FileItem& FileTableModel::file(const QModelIndex& index) const {
    return list_.files().at(static_cast<std::size_t>(index.row()));
}

QString FileTableModel::text(const FileItem& item, Column column) const {
    switch (column) {
        case Column::name:
            return item.name();
        case Column::from:
            return inputText(item);
        case Column::to:
            return item.inputFormat ? rawValue(shownFormat(item)) : noValue();
        case Column::size:
            return sizeText(item);
        case Column::saving:
            return savingText(item);
        case Column::status:
            return statusLook(item, list_.isConverting).label;
        case Column::check:
        case Column::file:
            break;
    }
    return {};
}

/// Cells without text of their own, and what a row shows beside its text.
QString FileTableModel::spokenText(const FileItem& item, Column column) const {
    switch (column) {
        case Column::check:
            return item.isSelected ? QStringLiteral("Selected") : QStringLiteral("Not selected");
        case Column::name:
            return item.errorMessage ? item.name() + QStringLiteral(", ") + *item.errorMessage : item.name();
        case Column::file:
            return item.inputFormat ? QStringLiteral("Show in Finder") : QString();
        default:
            return text(item, column);
    }
}

QVariant FileTableModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const FileItem& item = file(index);
    const auto column = static_cast<Column>(index.column());
    switch (role) {
        case Qt::DisplayRole:
            return text(item, column);
        case Qt::AccessibleTextRole:
            return spokenText(item, column);
        case Qt::ToolTipRole:
            return column == Column::to ? QVariant() : text(item, column);
        case Qt::CheckStateRole:
            return column == Column::check ? QVariant(item.isSelected ? Qt::Checked : Qt::Unchecked) : QVariant();
        default:
            return {};
    }
}

QVariant FileTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
        return QString::fromLatin1(columnRow(section).title);
    }
    if (orientation == Qt::Horizontal && role == Qt::AccessibleTextRole && section == columnIndex(Column::check)) {
        return QStringLiteral("Selected");
    }
    return {};
}

Qt::ItemFlags FileTableModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == columnIndex(Column::check) ? flags | Qt::ItemIsUserCheckable : flags;
}

bool FileTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || index.column() != columnIndex(Column::check)) {
        return false;
    }
    list_.setChecked(index.row(), value.value<Qt::CheckState>() == Qt::Checked);
    return true;
}

void FileTableModel::insertFiles(qsizetype first, qsizetype count) {
    if (count > 0) {
        beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + count) - 1);
        rows_ += static_cast<int>(count);
        endInsertRows();
    }
}

void FileTableModel::changeRow(qsizetype row) {
    emit dataChanged(index(static_cast<int>(row), 0), index(static_cast<int>(row), columnIndex(Column::file)));
}

void FileTableModel::changeAll() {
    if (rows_ > 0) {
        emit dataChanged(index(0, 0), index(rows_ - 1, columnIndex(Column::file)));
    }
}

void FileTableModel::reset() {
    beginResetModel();
    rows_ = static_cast<int>(list_.files().size());
    endResetModel();
}

}  // namespace sorvik
