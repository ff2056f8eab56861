#pragma once

#include <QAbstractTableModel>

#include "core/file_processing_view_model.h"
#include "ui/table/file_columns.h"

namespace sorvik {

/// The work list as Qt's views want it. Holds nothing but the number of rows: the view model is the truth.
class FileTableModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    /// `list` must outlive all use of the object but its destruction.
    explicit FileTableModel(FileProcessingViewModel& list, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// What a delegate paints from. The index must be valid.
    [[nodiscard]] const FileItem& file(const QModelIndex& index) const;
    [[nodiscard]] bool isConverting() const { return list_.isConverting; }

private:
    void insertRows(qsizetype first, qsizetype count);
    void changeRow(qsizetype row);
    void changeAll();
    void reset();
    [[nodiscard]] QString text(const FileItem& item, Column column) const;
    [[nodiscard]] QString spokenText(const FileItem& item, Column column) const;

    FileProcessingViewModel& list_;
    int rows_ = 0;  // what the views know of, which is behind the list for a moment
    QPropertyNotifier convertingObserver_;
};

}  // namespace sorvik
