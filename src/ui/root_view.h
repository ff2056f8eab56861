#pragma once

#include <QAction>
#include <QMainWindow>

#include "core/update_controller.h"
#include "ui/content_view.h"

namespace sorvik {

/// The main window: menus, drops and the window's place, round the content that does the work.
class RootView final : public QMainWindow {
    Q_OBJECT

public:
    /// All must outlive the object. Without `updates` nothing is asked or offered about them.
    RootView(BatchEngine& engine, AppSettings& settings, UpdateController* updates = nullptr,
             QWidget* parent = nullptr);
    ~RootView() override;

    [[nodiscard]] ContentView& content() { return *content_; }

    /// Takes files in as if they were dropped.
    void addFiles(const QList<QUrl>& urls);

    /// Brings the window to the front.
    void present();

signals:
    void aboutRequested();
    void preferencesRequested();
    void revealRequested(const QUrl& url);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void addApplicationMenu();
    void addCheckForUpdates(QMenu& menu);
    void addFileMenu();
    void addEditMenu();
    void updateActions();
    void openFiles();
    void paste();
    void restorePlace();
    void appear();

    AppSettings& settings_;
    UpdateController* updates_;
    ContentView* content_;
    QAction* start_ = nullptr;
    QAction* stop_ = nullptr;
    QAction* remove_ = nullptr;
    QString lastFolder_;
    bool hasAppeared_ = false;
    std::vector<QPropertyNotifier> observers_;
};

}  // namespace sorvik
