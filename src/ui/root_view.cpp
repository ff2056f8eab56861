#include "ui/root_view.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMenuBar>
#include <QMimeData>
#include <QStandardPaths>

#include "ui/check_for_updates_action.h"
#include "ui/dropped_urls.h"
#include "ui/look/front.h"
#include "ui/update_prompt.h"

namespace sorvik {
namespace {

constexpr QSize defaultSize(800, 460);
constexpr int leastHeight = 320;  // the least width is the content's
constexpr std::chrono::milliseconds promptDelay{500};

QString geometryKey() { return QStringLiteral("mainWindowGeometry"); }

QString pictureFilter() {
    QStringList patterns;
    for (const QString& extension : recognisedExtensions()) {
        patterns << QStringLiteral("*.") + extension << QStringLiteral("*.") + extension.toUpper();
    }
    return QStringLiteral("Images (%1)").arg(patterns.join(u' '));
}

QAction* addTo(QMenu* menu, const QString& text, const QString& name, const QKeySequence& shortcut) {
    QAction* action = menu->addAction(text);
    action->setObjectName(name);
    action->setShortcut(shortcut);
    return action;
}

}  // namespace

RootView::RootView(BatchEngine& engine, AppSettings& settings, UpdateController* updates, QWidget* parent)
    : QMainWindow(parent), settings_(settings), updates_(updates), content_(new ContentView(engine, settings, this)) {
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(QStringLiteral("Sorvik"));
    setAcceptDrops(true);
    setCentralWidget(content_);
    setMinimumHeight(leastHeight);
    addApplicationMenu();
    addFileMenu();
    addEditMenu();
    connect(content_, &ContentView::preferencesRequested, this, &RootView::preferencesRequested);
    connect(content_, &ContentView::revealRequested, this, &RootView::revealRequested);
    FileProcessingViewModel& list = content_->list();
    observers_.push_back(list.isConverting.addNotifier([this] { updateActions(); }));
    observers_.push_back(list.selection.addNotifier([this] { updateActions(); }));
    connect(&list, &FileProcessingViewModel::filesInserted, this, &RootView::updateActions);
    connect(&list, &FileProcessingViewModel::filesReset, this, &RootView::updateActions);
    updateActions();
    restorePlace();
}

RootView::~RootView() { content_->list().finish(); }

// Menus

void RootView::addApplicationMenu() {
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Sorvik"));
    connect(addTo(menu, QStringLiteral("About Sorvik"), QStringLiteral("aboutAction"), {}), &QAction::triggered, this,
            &RootView::aboutRequested);
    addCheckForUpdates(*menu);
    menu->addSeparator();
    QAction* preferences = addTo(menu, QStringLiteral("Preferences…"), QStringLiteral("preferencesAction"),
                                 QKeySequence(Qt::CTRL | Qt::Key_Comma));
    preferences->setShortcutContext(Qt::ApplicationShortcut);
    connect(preferences, &QAction::triggered, this, &RootView::preferencesRequested);
    menu->addSeparator();
    QAction* quit =
        addTo(menu, QStringLiteral("Quit Sorvik"), QStringLiteral("quitAction"), QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setShortcutContext(Qt::ApplicationShortcut);
    connect(quit, &QAction::triggered, this, &QWidget::close);
}

void RootView::addCheckForUpdates(QMenu& menu) {
    Updater* updater = updates_ != nullptr ? updates_->updater() : nullptr;
    if (updater != nullptr) {
        auto* action =
            new CheckForUpdatesAction(menu, updater->canCheckForUpdates, [updater] { updater->checkForUpdates(); });
        action->setObjectName(QStringLiteral("checkForUpdatesAction"));
    }
}

void RootView::addFileMenu() {
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&File"));
    connect(addTo(menu, QStringLiteral("Add Files..."), QStringLiteral("addFilesAction"), QKeySequence::Open),
            &QAction::triggered, this, &RootView::openFiles);
    menu->addSeparator();
    start_ =
        addTo(menu, QStringLiteral("Start"), QStringLiteral("startAction"), QKeySequence(Qt::CTRL | Qt::Key_Return));
    connect(start_, &QAction::triggered, content_, &ContentView::start);
    stop_ = addTo(menu, QStringLiteral("Stop"), QStringLiteral("stopAction"), QKeySequence(Qt::CTRL | Qt::Key_Period));
    connect(stop_, &QAction::triggered, this, [this] { content_->list().cancel(); });
}

void RootView::addEditMenu() {
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Edit"));
    connect(addTo(menu, QStringLiteral("Paste"), QStringLiteral("pasteAction"), QKeySequence::Paste),
            &QAction::triggered, this, &RootView::paste);
    connect(addTo(menu, QStringLiteral("Select All"), QStringLiteral("selectAllAction"), QKeySequence::SelectAll),
            &QAction::triggered, this, [this] { content_->table().selectAll(); });
    // The key itself is the table's, which hears its repeats too.
    remove_ = addTo(menu, QStringLiteral("Remove from List\tDel"), QStringLiteral("removeAction"), {});
    connect(remove_, &QAction::triggered, this, [this] { content_->list().deleteSelected(); });
}

void RootView::updateActions() {
    FileProcessingViewModel& list = content_->list();
    start_->setEnabled(!list.isConverting && !list.files().empty());
    stop_->setEnabled(list.isConverting);
    remove_->setEnabled(!list.isConverting && !list.selection.value().isEmpty());
}

// Files

void RootView::addFiles(const QList<QUrl>& urls) {
    if (!urls.isEmpty()) {
        content_->list().handleDrop(urls);
    }
}

void RootView::openFiles() {
    auto* dialog = new QFileDialog(this, QStringLiteral("Add Files"));
    dialog->setObjectName(QStringLiteral("addFilesDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setNameFilters({pictureFilter(), QStringLiteral("All files (*)")});
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    dialog->setDirectory(lastFolder_.isEmpty() ? pictures : lastFolder_);
    connect(dialog, &QFileDialog::urlsSelected, this, [this, dialog](const QList<QUrl>& urls) {
        lastFolder_ = dialog->directory().absolutePath();
        addFiles(urls);
    });
    dialog->open();
}

void RootView::paste() { addFiles(droppedFiles(QApplication::clipboard()->mimeData())); }

void RootView::dragEnterEvent(QDragEnterEvent* event) {
    if (!droppedFiles(event->mimeData()).isEmpty()) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
        content_->setInviting(true);
    }
}

void RootView::dragLeaveEvent(QDragLeaveEvent*) { content_->setInviting(false); }

void RootView::dropEvent(QDropEvent* event) {
    content_->setInviting(false);
    addFiles(droppedFiles(event->mimeData()));
    // The files stay where they are, whatever the other side proposes.
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

// The window

void RootView::restorePlace() {
    resize(defaultSize);
    restoreGeometry(settings_.store().value(geometryKey()).toByteArray());
}

void RootView::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (!hasAppeared_) {
        hasAppeared_ = true;
        appear();
    }
}

void RootView::appear() {
    content_->appear();
    if (updates_ != nullptr && updates_->shouldShowPrompt()) {
        QTimer::singleShot(promptDelay, this, [this] {
            askForAutomaticUpdates(*this, [this](bool automatically) { updates_->answerPrompt(automatically); });
        });
    }
}

void RootView::closeEvent(QCloseEvent* event) {
    settings_.store().setValue(geometryKey(), saveGeometry());
    QMainWindow::closeEvent(event);
}

void RootView::present() { bringToFront(*this); }

}  // namespace sorvik
