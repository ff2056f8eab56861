#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include "core/batch_engine.h"
#include "platform/defaults_store.h"
#include "ui/look/theme.h"
#include "ui/root_view.h"

namespace sorvik {

/// The main window with the real engines, over copies of real files in a folder of its own.
class WindowTest : public testing::Test {
protected:
    static constexpr int patience = 120000;  // milliseconds; only a hang takes that long

    WindowTest() {
        applyTheme(false);
        settings.hasShownUpdatePreferencesDialog = true;
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    [[nodiscard]] static QString sample(const QString& name) { return QStringLiteral(SORVIK_TEST_DATA "/") + name; }

    /// A copy of a sample under a name of the test's.
    QString copy(const QString& from, const QString& name) const {
        EXPECT_TRUE(QFile::copy(sample(from), folder.filePath(name)));
        return folder.filePath(name);
    }

    QString write(const QString& name, const QByteArray& content) const {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return folder.filePath(name);
    }

    /// A picture that takes the tools some tenths of a second.
    QString writeBig(const QString& name) const {
        QImage picture(2400, 2400, QImage::Format_RGB32);
        for (int y = 0; y < picture.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(picture.scanLine(y));
            for (int x = 0; x < picture.width(); ++x) {
                line[x] = qRgb(x * y / 64, x ^ y, x + y * 3);
            }
        }
        EXPECT_TRUE(picture.save(folder.filePath(name)));
        return folder.filePath(name);
    }

    /// Drags the paths onto a widget and lets go there, as a file manager does.
    void drop(const QStringList& paths, QWidget* over = nullptr) {
        QSignalSpy inserted(&list(), &FileProcessingViewModel::filesInserted);
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls << QUrl::fromLocalFile(path);
        }
        data.setUrls(urls);
        QWidget* target = over != nullptr ? over : static_cast<QWidget*>(&window);
        while (!target->acceptDrops()) {  // as Qt looks for the receiver
            target = target->parentWidget();
        }
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &enter);
        ASSERT_TRUE(enter.isAccepted());
        QDropEvent letGo(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &letGo);
        ASSERT_TRUE(!inserted.isEmpty() || inserted.wait(patience));
        settle();
    }

    /// Lets the views take in what has happened.
    static void settle() { QTest::qWait(1); }

    void waitForEnd() {
        QSignalSpy ended(&list(), &FileProcessingViewModel::batchEnded);
        ASSERT_TRUE(!list().isConverting || ended.wait(patience));
        settle();
    }

    /// The control of a name; of several, as each tab has a drop zone, the one that is seen.
    template <typename T>
    [[nodiscard]] T& control(const char* name) {
        const QList<T*> found = window.findChildren<T*>(QString::fromLatin1(name));
        EXPECT_FALSE(found.isEmpty()) << name;
        const auto seen = std::ranges::find_if(found, &QWidget::isVisible);
        return seen == found.end() ? *found.front() : **seen;
    }

    void click(const char* name) { QTest::mouseClick(&control<QAbstractButton>(name), Qt::LeftButton); }

    [[nodiscard]] QRect cell(int row, Column column) {
        return table().visualRect(table().model()->index(row, columnIndex(column)));
    }

    void clickCell(int row, Column column) {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, cell(row, column).center());
        settle();
    }

    [[nodiscard]] QString cellText(int row, Column column) {
        return table().model()->index(row, columnIndex(column)).data().toString();
    }

    [[nodiscard]] FileTableView& table() { return window.content().table(); }
    [[nodiscard]] FileProcessingViewModel& list() { return window.content().list(); }
    [[nodiscard]] const FileItem& row(std::size_t index) { return list().files().at(index); }
    [[nodiscard]] QString error(std::size_t index) { return row(index).errorMessage.value_or(QString()); }
    [[nodiscard]] QString text(const char* label) { return control<QLabel>(label).text(); }

    /// The names of the checked rows.
    [[nodiscard]] QStringList checked() {
        QStringList names;
        for (const FileItem& item : list().selectedFileItems()) {
            names << item.name();
        }
        return names;
    }

    QTemporaryDir folder;
    AppSettings settings{std::make_shared<MemoryDefaultsStore>()};
    SystemBatchEngine engine;
    RootView window{engine, settings};
};

}  // namespace sorvik
