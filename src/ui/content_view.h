#pragma once

#include <QStackedWidget>
#include <QTabWidget>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

#include "core/file_processing_view_model.h"
#include "ui/bottom_bar_view.h"
#include "ui/drop_zone_view.h"
#include "ui/table/file_table_view.h"

namespace sorvik {

/// The work of the main window: two tabs over one list, and the bar with the run button. Owns the list.
class ContentView final : public QWidget {
    Q_OBJECT

public:
    /// Both must outlive the object. When it goes, a batch that still runs is cancelled and what is in flight
    /// waited for.
    ContentView(BatchEngine& engine, AppSettings& settings, QWidget* parent = nullptr);
    ~ContentView() override;

    [[nodiscard]] FileProcessingViewModel& list() { return *list_; }

    /// The table of the open tab, seen or not.
    [[nodiscard]] FileTableView& table() const;

    /// Works the list off, by mode.
    void start();

    /// To be called when the window comes up for the first time.
    void appear();

    /// Shows that what is being dragged over the window would be taken.
    void setInviting(bool inviting);

signals:
    void preferencesRequested();
    void revealRequested(const QUrl& url);

private:
    struct Page {
        QStackedWidget* stack = nullptr;
        DropZoneView* dropZone = nullptr;
        FileTableView* table = nullptr;
    };

    [[nodiscard]] Page makePage(ProcessingMode mode, MetadataIcons* icons);
    void addTabs();
    void connectBar();
    void connectList();
    void connectSettings();
    void forgetRows();
    void changeMode();
    void checkBulkFormat();
    void refreshLater();
    void refresh();
    void keepColumns();

    AppSettings& settings_;
    std::unique_ptr<FileProcessingViewModel> list_;
    FileTableModel* model_;
    MetadataIcons* icons_;
    QTabWidget* tabs_;
    std::array<Page, 2> pages_;  // by mode
    BottomBarView* bar_;
    std::optional<ImageFormat> bulkOutputFormat_;
    QTimer refreshTimer_;
    std::vector<QPropertyNotifier> observers_;
};

}  // namespace sorvik
