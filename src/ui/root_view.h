#pragma once

#include <QAction>
#include <QMainWindow>

#include "ui/content_view.h"

namespace sorvik {

/// The main window: menus, drops and the window's place, round the content that does the work.
class RootView final : public QMainWindow {
    Q_OBJECT

public:
    /// Both must outlive the object.
    RootView(BatchEngine& engine, AppSettings& settings, QWidget* parent = nullptr);

    [[nodiscard]] ContentView& content() { return *content_; }

    /// Takes files in as if they were dropped.
    void addFiles(const QList<QUrl>& urls);

    /// Brings the window to the front.
    void present();

    /// Puts an item below "About Sorvik".
    void addApplicationAction(QAction* action);

signals:
    void aboutRequested();
    void preferencesRequested();
    void revealRequested(const QUrl& url);

    /// The window has come up for the first time.
    void appeared();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QAction* addAction(QMenu* menu, const QString& text, const QString& name, const QKeySequence& shortcut);
    void addApplicationMenu();
    void addFileMenu();
    void addEditMenu();
    void updateActions();
    void openFiles();
    void paste();
    void restorePlace();

    AppSettings& settings_;
    ContentView* content_;
    QMenu* applicationMenu_ = nullptr;
    QAction* afterAbout_ = nullptr;
    QAction* start_ = nullptr;
    QAction* stop_ = nullptr;
    QAction* remove_ = nullptr;
    QString lastFolder_;
    bool hasAppeared_ = false;
    std::vector<QPropertyNotifier> observers_;
};

}  // namespace sorvik
