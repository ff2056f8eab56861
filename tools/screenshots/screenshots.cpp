// usage: screenshots FOLDER light|dark
// Lays a picture of every window and state into a folder: real windows, real rows, real tools. tools/make-screenshots
// runs it for each scale.

#include <QApplication>
#include <QDir>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <cstdio>

#include "core/batch_engine.h"
#include "platform/defaults_store.h"
#include "platform/log.h"
#include "ui/about_window.h"
#include "ui/look/theme.h"
#include "ui/preferences/preferences_view.h"
#include "ui/root_view.h"
#include "ui/table/metadata_popover_view.h"
#include "ui/update_prompt.h"

using namespace sorvik;

namespace {

constexpr int patience = 60000;  // milliseconds

const QStringList& pictures() {
    static const QStringList names{
        QStringLiteral("jpeg/DSCN0010.jpg"),       QStringLiteral("heic/IMG_5195.HEIC"),
        QStringLiteral("raw/colorchart.dng"),      QStringLiteral("png/sample16.png"),
        QStringLiteral("jpeg/Canon_40D.jpg"),      QStringLiteral("psd/hopper.psd"),
        QStringLiteral("gif/animated-loop-3.gif"), QStringLiteral("eps/logo.eps"),
        QStringLiteral("avif/sunrise.avif"),       QStringLiteral("jpeg/concert.jpg"),
    };
    return names;
}

/// The main window over copies of the samples.
struct Stage {
    explicit Stage(ProcessingMode mode = ProcessingMode::convert) {
        settings.hasShownUpdatePreferencesDialog = true;
        settings.processingMode = mode;
        window.show();
        if (!QTest::qWaitForWindowExposed(&window, patience)) {
            std::fputs("the window does not come up\n", stderr);
        }
    }

    void drop(const QStringList& samples) {
        QList<QUrl> urls;
        for (const QString& each : samples) {
            const QString path = folder.filePath(QFileInfo(each).fileName());
            QFile::copy(QStringLiteral(SORVIK_SAMPLES "/") + each, path);
            urls << QUrl::fromLocalFile(path);
        }
        QSignalSpy inserted(&list(), &FileProcessingViewModel::filesInserted);
        window.addFiles(urls);
        inserted.wait(patience);
        table().setFocus();
        settle();
    }

    /// Until the icons have their answers.
    static void settle() { QTest::qWait(1500); }

    void run() {
        QSignalSpy ended(&list(), &FileProcessingViewModel::batchEnded);
        window.content().start();
        ended.wait(patience);
        QTest::qWait(200);
    }

    FileProcessingViewModel& list() { return window.content().list(); }
    FileTableView& table() { return window.content().table(); }

    QTemporaryDir folder;
    AppSettings settings{std::make_shared<MemoryDefaultsStore>()};
    SystemBatchEngine engine;
    RootView window{engine, settings};
};

/// A window, with what has popped up over it.
QPixmap picture(QWidget& window, QWidget* popup = nullptr) {
    QPixmap below = window.grab();
    if (popup != nullptr) {
        QPainter(&below).drawPixmap(popup->pos() - window.mapToGlobal(QPoint()), popup->grab());
    }
    return below;
}

QPixmap emptyList() {
    Stage stage;
    return picture(stage.window);
}

QPixmap invitingList() {
    Stage stage;
    stage.window.content().setInviting(true);
    return picture(stage.window);
}

QPixmap rows() {
    Stage stage;
    stage.drop(pictures());
    for (const qsizetype row : {0, 4, 9}) {
        stage.list().setChecked(row, true);
    }
    stage.table().selectRow(1);
    QTest::qWait(200);
    return picture(stage.window);
}

QPixmap running() {
    Stage stage;
    stage.drop(pictures());
    QSignalSpy ended(&stage.list(), &FileProcessingViewModel::rowEnded);
    stage.window.content().start();
    while (ended.size() < 4 && ended.wait(patience)) {
    }
    QTest::qWait(150);
    return picture(stage.window);
}

QPixmap done() {
    Stage stage;
    stage.settings.convertCompressionEnabled = true;
    stage.drop(pictures());
    stage.run();
    return picture(stage.window);
}

QPixmap failures() {
    Stage stage;
    QFile notes(stage.folder.filePath(QStringLiteral("notes.txt")));
    if (notes.open(QIODevice::WriteOnly)) {
        notes.write("words");
    }
    notes.close();
    stage.drop({QStringLiteral("png/sample16.png"), QStringLiteral("raw/sample.cr2"),
                QStringLiteral("eps/illuCS6_preview.eps"), QStringLiteral("jpeg/testimgl.jpg"),
                QStringLiteral("jpeg/iptc.jpg")});
    stage.window.addFiles({QUrl::fromLocalFile(notes.fileName())});
    Stage::settle();
    stage.run();
    return picture(stage.window);
}

QPixmap popover() {
    Stage stage;
    stage.drop(pictures());
    stage.table().showMetadata(stage.table().model()->index(0, columnIndex(Column::name)));
    QTest::qWait(300);
    return picture(stage.window, stage.table().findChild<MetadataPopoverView*>());
}

QPixmap compressMode() {
    Stage stage(ProcessingMode::compress);
    stage.drop({QStringLiteral("jpeg/DSCN0010.jpg"), QStringLiteral("png/sample16.png"),
                QStringLiteral("gif/cramps.gif"), QStringLiteral("pdf/ISO_12233-reschart.pdf"),
                QStringLiteral("psd/hopper.psd"), QStringLiteral("jpeg/jolla.jpg")});
    stage.run();
    return picture(stage.window);
}

QPixmap applicationMenu() {
    Stage stage;
    auto* menu = stage.window.menuBar()->findChild<QMenu*>();
    stage.window.menuBar()->setActiveAction(menu->menuAction());
    QTest::qWait(200);
    return picture(stage.window, menu);
}

/// One tab of the preferences, at its top or at its end.
QPixmap preferences(int tab, bool end = false) {
    AppSettings settings(std::make_shared<MemoryDefaultsStore>());
    settings.convertCompressionEnabled = true;
    PreferencesView view(settings);
    auto& tabs = *view.findChild<QTabWidget*>();
    tabs.setCurrentIndex(tab);
    view.show();
    QTest::qWait(200);
    if (auto* area = qobject_cast<QScrollArea*>(tabs.currentWidget()); area != nullptr && end) {
        area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
        QTest::qWait(50);
    }
    return picture(view);
}

QPixmap preferencesGeneral() { return preferences(0); }
QPixmap preferencesFiles() { return preferences(1); }
QPixmap preferencesFilesEnd() { return preferences(1, true); }
QPixmap preferencesOutput() { return preferences(2); }
QPixmap preferencesOutputEnd() { return preferences(2, true); }

QPixmap about() {
    AboutWindowController about(QStringLiteral(SORVIK_VERSION), {QStringLiteral("Brennaloft"), {}, {}});
    about.show();
    QTest::qWait(200);
    return picture(*about.window());
}

QPixmap updatePrompt() {
    Stage stage;
    askForAutomaticUpdates(stage.window, [](bool) {});
    QTest::qWait(200);
    return picture(*stage.window.findChild<QMessageBox*>());
}

struct Scene {
    const char* name;
    QPixmap (*take)();
};

constexpr std::array scenes{
    Scene{"empty", emptyList},
    Scene{"inviting", invitingList},
    Scene{"rows", rows},
    Scene{"running", running},
    Scene{"done", done},
    Scene{"failures", failures},
    Scene{"popover", popover},
    Scene{"compress", compressMode},
    Scene{"menu", applicationMenu},
    Scene{"preferences-general", preferencesGeneral},
    Scene{"preferences-files", preferencesFiles},
    Scene{"preferences-files-end", preferencesFilesEnd},
    Scene{"preferences-output", preferencesOutput},
    Scene{"preferences-output-end", preferencesOutputEnd},
    Scene{"about", about},
    Scene{"prompt", updatePrompt},
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc < 3) {
        std::fputs("usage: screenshots FOLDER light|dark [SCENE...]\n", stderr);
        return 2;
    }
    setLogSink({});
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/sorvik.svg")));
    const QStringList wanted = QApplication::arguments().mid(3);
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const QString look = QString::fromLocal8Bit(argv[2]);
    applyTheme(look == QLatin1StringView("dark"));
    const QString scale = application.devicePixelRatio() > 1 ? QStringLiteral("-200") : QString();
    for (const Scene& scene : scenes) {
        const QString name = QString::fromLatin1(scene.name);
        const QString path = QStringLiteral("%1/%2-%3%4.png").arg(folder, name, look, scale);
        if ((wanted.isEmpty() || wanted.contains(name)) && !scene.take().save(path)) {
            std::fprintf(stderr, "%s can't be written\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}
