#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "core/file_processing_view_model.h"
#include "fake_engine.h"
#include "platform/defaults_store.h"
#include "platform/log.h"

namespace sorvik {

/// A view model over files in a folder of its own.
template <typename Engine>
class ListTest : public testing::Test {
protected:
    ListTest() {
        setLogSink({});
        model.setSettings(&settings);
    }

    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

    QString write(const QString& name, const QByteArray& content = "content") {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path(name);
    }

    [[nodiscard]] QByteArray read(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    /// Drops files and waits for their rows.
    void drop(const QStringList& paths) {
        QSignalSpy inserted(&model, &FileProcessingViewModel::filesInserted);
        QList<QUrl> urls;
        for (const QString& each : paths) {
            urls << QUrl::fromLocalFile(each);
        }
        EXPECT_TRUE(model.handleDrop(urls));
        ASSERT_TRUE(!inserted.isEmpty() || inserted.wait(20000));
    }

    void runToEnd() { runToEnd(&FileProcessingViewModel::startConversion); }
    void compressToEnd() { runToEnd(&FileProcessingViewModel::startCompression); }

    [[nodiscard]] const FileItem& row(std::size_t index) const { return model.files().at(index); }
    [[nodiscard]] QString error(std::size_t index) const { return row(index).errorMessage.value_or(QString()); }
    [[nodiscard]] QString summary() const { return model.batchCompletionMessage.value().value_or(QString()); }

    void runToEnd(void (FileProcessingViewModel::*start)(bool)) {
        QSignalSpy ended(&model, &FileProcessingViewModel::batchEnded);
        (model.*start)(false);
        ASSERT_TRUE(!ended.isEmpty() || ended.wait(120000));
    }

    QTemporaryDir folder;
    Engine engine;
    AppSettings settings{std::make_shared<MemoryDefaultsStore>()};
    FileProcessingViewModel model{engine};
};

}  // namespace sorvik
