#include "platform/defaults_store.h"

#include "platform/files.h"
#include "platform/log.h"

#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <array>
#include <limits>
#include <thread>

namespace sorvik {
namespace {

class IniStore : public testing::Test {
protected:
    void SetUp() override {
        setLogSink([this](const QString& line) { lines_ << line; });
    }
    void TearDown() override { setLogSink({}); }

    void put(const QByteArray& bytes) const { ASSERT_FALSE(writeAtomically(path_, bytes)); }

    [[nodiscard]] QStringList files() const {
        return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("sorvik.ini"));
    QStringList lines_;
};

const QString quality = QStringLiteral("jpegQuality");
const QString strip = QStringLiteral("stripMetadata");
const QString format = QStringLiteral("defaultOutputFormat_jpg");

TEST_F(IniStore, ReadsBackWhatAnEarlierRunSet) {
    const QString deep = folder_.filePath(QStringLiteral("not/yet/there.ini"));
    {
        IniDefaultsStore store(deep);
        store.setValue(quality, 0.8);
        store.setValue(strip, true);
        store.setValue(format, QStringLiteral("a, \"b\" ä\n@x"));
        store.setValue(QStringLiteral("count"), 9'007'199'254'740'993LL);
        store.setValue(QStringLiteral("gone"), 1);
        store.remove(QStringLiteral("gone"));
    }
    const IniDefaultsStore store(deep);
    EXPECT_EQ(store.number(quality), 0.8);
    EXPECT_TRUE(store.boolean(strip));
    EXPECT_EQ(store.text(format), QStringLiteral("a, \"b\" ä\n@x"));
    EXPECT_EQ(store.value(QStringLiteral("count")).toLongLong(), 9'007'199'254'740'993LL);
    EXPECT_FALSE(store.contains(QStringLiteral("gone")));
    EXPECT_TRUE(lines_.isEmpty());
}

TEST_F(IniStore, WritesWhileTheEventLoopRuns) {
    IniDefaultsStore store(path_);
    store.setValue(quality, 85);
    QCoreApplication::processEvents();
    EXPECT_TRUE(readFile(path_).value_or(QByteArray()).contains("jpegQuality=85"));
}

TEST_F(IniStore, MovesADamagedFileAsideAndStartsEmpty) {
    const std::array<QByteArray, 4> damaged{QByteArray("[General]\njpegQuality=85\nstripMeta"),
                                            QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11),
                                            QByteArray("[General]\njpegQuality=85\nx=\xff\xfe\n"),
                                            QByteArray("[General]\njpegQuality=85\n") + QByteArray(100, '\0')};
    for (const QByteArray& bytes : damaged) {
        lines_.clear();
        put(bytes);
        {
            IniDefaultsStore store(path_);
            EXPECT_FALSE(store.contains(quality));
            store.setValue(strip, true);
        }
        EXPECT_EQ(lines_.size(), 1);
        const QStringList aside = files().filter(QRegularExpression(QStringLiteral("^sorvik\\.ini\\.damaged-\\d{14}")));
        ASSERT_EQ(aside.size(), 1) << files().join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(readFile(folder_.filePath(aside.front())), bytes);
        EXPECT_EQ(readFile(path_), QByteArray("[General]\nstripMetadata=true\n"));
        QFile::remove(folder_.filePath(aside.front()));
    }
}

TEST_F(IniStore, KeepsEveryDamagedFile) {
    for (int start = 0; start < 3; ++start) {
        put("junk " + QByteArray::number(start));
        const IniDefaultsStore store(path_);
    }
    EXPECT_EQ(files().filter(QStringLiteral("damaged")).size(), 3);
}

TEST_F(IniStore, GetsByWithAFolderInItsPlace) {
    QDir().mkpath(path_ + QStringLiteral("/inner"));
    IniDefaultsStore store(path_);
    store.setValue(quality, 1);
    EXPECT_EQ(store.number(quality), 1);
    EXPECT_EQ(lines_.size(), 1);
}

TEST_F(IniStore, ServesManyThreads) {
    IniDefaultsStore store(path_);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&store, key = QString::number(thread)] {
            for (int i = 1; i <= 200; ++i) {
                store.setValue(key, i);
                EXPECT_EQ(store.number(key), i);
            }
        });
    }
    for (int i = 0; i < 50; ++i) {
        QCoreApplication::processEvents();
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(store.number(QStringLiteral("3")), 200);
}

TEST(DefaultsStore, ReadsOnlyTheKindThatIsAskedFor) {
    struct Row {
        QVariant value;
        bool boolean;
        double number;
    };
    const std::array rows{
        Row{true, true, 0},
        Row{QStringLiteral("true"), true, 0},
        Row{QStringLiteral("false"), false, 0},
        Row{QStringLiteral("garbage"), false, 0},
        Row{QStringLiteral("0.8"), false, 0.8},
        Row{85, false, 85},
        Row{1, true, 1},
        Row{QStringLiteral("85"), false, 85},
        Row{QStringLiteral("85x"), false, 0},
        Row{QStringLiteral("nan"), false, 0},
        Row{QStringLiteral("1e999"), false, 0},
        Row{std::numeric_limits<double>::infinity(), false, 0},
        Row{QStringList{QStringLiteral("1"), QStringLiteral("2")}, false, 0},
        Row{QVariant(), false, 0},
    };
    MemoryDefaultsStore store;
    for (const Row& row : rows) {
        store.setValue(strip, row.value);
        EXPECT_EQ(store.boolean(strip), row.boolean) << row.value.toString().toStdString();
        EXPECT_EQ(store.number(strip), row.number) << row.value.toString().toStdString();
    }
    store.remove(strip);
    EXPECT_FALSE(store.contains(strip));
    EXPECT_FALSE(store.value(strip).isValid());
}

}  // namespace
}  // namespace sorvik
