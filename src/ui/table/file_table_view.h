#pragma once

#include <QTableView>
#include <QTimer>

#include <utility>

#include "core/file_processing_view_model.h"
#include "ui/table/cell_geometry.h"
#include "ui/table/file_table_model.h"
#include "ui/table/metadata_icons.h"

class QMenu;

namespace sorvik {

/// The work list on screen. The rows that are highlighted are the list's `selection`; what a click or a key on a cell
/// means goes straight to the list. Space and Return work the cell that has the focus.
class FileTableView : public QTableView {
    Q_OBJECT

public:
    /// All must outlive the object; without `icons` no row shows one.
    FileTableView(FileProcessingViewModel& list, FileTableModel& model, ProcessingMode mode, MetadataIcons* icons,
                  QWidget* parent = nullptr);

    /// The columns' widths as the user left them; to be kept and given back.
    [[nodiscard]] QByteArray columnState() const;
    void restoreColumnState(const QByteArray& state);

    /// What a cell offers, done: toggled, opened, shown.
    void activateCell(const QModelIndex& index);

    /// The menu of a row's targets, ready to be opened. The caller owns it.
    [[nodiscard]] QMenu* makeFormatMenu(const QModelIndex& index);
    void showMetadata(const QModelIndex& index);

signals:
    void deleteRequested();
    void revealRequested(const QUrl& url);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    void setUpRows();
    void setUpColumns();
    void setUpDelegates();
    void connectList();
    void connectRows();

    [[nodiscard]] const FileItem& fileAt(const QModelIndex& index) const { return model_.file(index); }
    [[nodiscard]] bool hasIcon(const FileItem& item) const;
    [[nodiscard]] Hotspot hotspotUnder(const QPoint& point) const;
    [[nodiscard]] QString hintUnder(const QPoint& point) const;
    [[nodiscard]] std::pair<int, int> seenRows() const;
    [[nodiscard]] bool isTurning(const FileItem& item) const;

    void returnToPlace();
    void fitColumns();
    void holdWidth(int column, int from, int to);
    void fitRows(int first, int last);
    [[nodiscard]] int heightOf(const FileItem& item);
    void lookAtSeenRows();
    void startArcs();
    void turnArcs();
    void redrawName(const QUuid& id);
    void takeSelection();
    void tellSelection();
    void openPicker(const QModelIndex& index);

    FileProcessingViewModel& list_;
    FileTableModel& model_;
    ProcessingMode mode_;
    MetadataIcons* icons_;
    QHash<std::pair<QString, int>, int> errorHeights_;  // of rows with a message, by it and its width
    QTimer seenTimer_;
    QTimer arcTimer_;
    QPersistentModelIndex pressed_;
    struct {
        int scroll = 0;
        int row = -1;
        int column = 0;
    } place_;  // where the view stood before rows went
    bool fitting_ = false;
    bool userSized_ = false;
    bool syncingSelection_ = false;
    QPropertyNotifier selectionObserver_;
};

}  // namespace sorvik
