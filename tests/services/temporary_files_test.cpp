#include "services/temporary_files.h"

#include "platform/log.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>
#include <chrono>
#include <thread>
#include <vector>

namespace sorvik {
namespace {

using namespace std::chrono_literals;

const QString prefix = QStringLiteral("sorvik_ext");
const QString png = QStringLiteral("png");

QByteArray native(const QString& path) { return QFile::encodeName(path); }

TEST(SharedTempFiles, NamesTellProcessThreadNumberAndTime) {
    SharedTempFileManager manager(QStringLiteral("/some/where"));
    const auto before =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
            .count();
    const QString pattern = QStringLiteral("^/some/where/sorvik_ext_%1_%2_%3_(\\d{13,})\\.png$");
    for (int number = 1; number <= 2; ++number) {
        const QRegularExpression expected(pattern.arg(getpid()).arg(gettid()).arg(number));
        const auto match = expected.match(manager.generateUniquePath(prefix, png));
        ASSERT_TRUE(match.hasMatch());
        EXPECT_NEAR(match.captured(1).toDouble(), static_cast<double>(before), 10000);
    }
}

TEST(SharedTempFiles, NeverCollideBetweenThreads) {
    const QTemporaryDir folder;
    SharedTempFileManager manager(folder.path());
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&manager] {
            for (int i = 0; i < 50; ++i) {
                EXPECT_NO_THROW(static_cast<void>(manager.createUniqueTempFile(prefix, png)));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 200);
}

TEST(SharedTempFiles, AreEmptyPrivateAndGoWhenDone) {
    QString path;
    {
        const TempFile file(prefix, png);
        path = file.path();
        EXPECT_TRUE(path.startsWith(SharedTempFileManager::shared().tempDirectory() + QStringLiteral("/sorvik_ext_")));
        struct stat attributes {};
        ASSERT_EQ(stat(native(path).constData(), &attributes), 0);
        EXPECT_EQ(attributes.st_mode & 07777, 0600U);
        EXPECT_EQ(attributes.st_size, 0);
    }
    EXPECT_FALSE(QFile::exists(path));
}

void expectRefusal(const QString& directory, const char* reason) {
    SharedTempFileManager manager(directory);
    QElapsedTimer clock;
    clock.start();
    try {
        static_cast<void>(manager.createUniqueTempFile(prefix, png));
        ADD_FAILURE() << "made a file";
    } catch (const TemporaryFileError& error) {
        EXPECT_STREQ(error.what(),
                     (std::string("Failed to create unique temporary file after 10 attempts: ") + reason).c_str());
    }
    EXPECT_GE(clock.elapsed(), 426);
    // Ten attempts, ten names.
    EXPECT_TRUE(manager.generateUniquePath(prefix, png).contains(QStringLiteral("_11_")));
}

TEST(SharedTempFiles, GiveUpAfterTenAttemptsWithTheReason) {
    const QTemporaryDir folder;
    expectRefusal(folder.filePath(QStringLiteral("missing")), "No such file or directory");
    if (mount("tmpfs", native(folder.path()).constData(), "tmpfs", 0, "size=4k,nr_inodes=1") == 0) {
        expectRefusal(folder.path(), "No space left on device");
        umount2(native(folder.path()).constData(), MNT_DETACH);
    }
}

TEST(OrphanSweep, DecidesByNameAndAge) {
    const QString name = QStringLiteral("sorvik_x");
    EXPECT_FALSE(isOrphaned(name, 100s, 100s));
    EXPECT_TRUE(isOrphaned(name, 100s - 1ns, 100s));
    EXPECT_FALSE(isOrphaned(name, 101s, 100s));
    EXPECT_FALSE(isOrphaned(QStringLiteral("sorvik"), 0s, 100s));
    EXPECT_FALSE(isOrphaned(QStringLiteral(".sorvik_x"), 0s, 100s));
    EXPECT_FALSE(isOrphaned(QStringLiteral("a_sorvik_x"), 0s, 100s));
}

class Sweep : public testing::Test {
protected:
    void SetUp() override {
        setLogSink([this](const QString& line) { lines_ << line; });
        QDir().mkpath(path("precious"));
        put("precious/photo");
    }
    void TearDown() override { setLogSink({}); }

    [[nodiscard]] QString path(const char* name) const { return folder_.filePath(QString::fromUtf8(name)); }

    void put(const char* name) const { ASSERT_TRUE(QFile(path(name)).open(QIODevice::WriteOnly)); }

    /// Two sweeps, to which everything made before now is old.
    static void sweepAll(const QString& directory) {
        std::this_thread::sleep_for(20ms);
        TempFileManager manager(directory, 1ns);
        manager.cleanupOrphanedFiles();
    }

    [[nodiscard]] QStringList names() const {
        return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder_;
    QStringList lines_;
};

TEST_F(Sweep, RemovesFilesFoldersAndLinksButNothingBehindThem) {
    put("sorvik_file");
    put("sorvik");
    put(".sorvik_hidden");
    put("other");
    put("precious/sorvik_inner");
    QDir().mkpath(path("sorvik_folder/deep"));
    put("sorvik_folder/deep/file");
    ASSERT_EQ(symlink("../precious", native(path("sorvik_folder/link")).constData()), 0);
    ASSERT_EQ(symlink("precious", native(path("sorvik_link")).constData()), 0);
    ASSERT_EQ(symlink("nowhere", native(path("sorvik_dangling")).constData()), 0);
    ASSERT_EQ(mkfifo(native(path("sorvik_fifo")).constData(), 0600), 0);
    ASSERT_TRUE(QFile(path("sorvik_file")).setPermissions(QFile::Permissions()));
    const QByteArray foreign = native(folder_.path()) + "/sorvik_\xff\xfe";
    ASSERT_EQ(mkdir(foreign.constData(), 0700), 0);

    sweepAll(folder_.path());

    EXPECT_EQ(names(), QStringList({QStringLiteral(".sorvik_hidden"), QStringLiteral("other"),
                                    QStringLiteral("precious"), QStringLiteral("sorvik")}));
    EXPECT_EQ(QDir(path("precious")).entryList(QDir::Files).size(), 2);
    EXPECT_EQ(lines_.size(), 6);
    EXPECT_TRUE(lines_.contains(QStringLiteral("Cleaned up orphaned temp file: sorvik_link")));
}

TEST_F(Sweep, SparesWhatIsNew) {
    put("sorvik_fresh");
    // Backdating the content changes nothing: a tool may carry a picture's old times over.
    const timespec times[]{{1000, 0}, {1000, 0}};
    utimensat(AT_FDCWD, native(path("sorvik_fresh")).constData(), times, 0);
    TempFileManager(folder_.path()).waitForSweeps();
    EXPECT_TRUE(QFile::exists(path("sorvik_fresh")));
    EXPECT_TRUE(lines_.isEmpty());
}

TEST_F(Sweep, TellsWhatItCannotDoAndGoesOn) {
    sweepAll(path("missing"));
    EXPECT_EQ(lines_, QStringList(2, QStringLiteral("Failed to list temp directory contents: "
                                                    "No such file or directory")));
    lines_.clear();
    put("sorvik_a");
    put("sorvik_z");
    QDir().mkpath(path("sorvik_busy"));
    if (mount("tmpfs", native(path("sorvik_busy")).constData(), "tmpfs", 0, nullptr) != 0) {
        GTEST_SKIP() << "may not mount";
    }
    sweepAll(folder_.path());
    umount2(native(path("sorvik_busy")).constData(), MNT_DETACH);
    EXPECT_EQ(lines_.count(QStringLiteral("Failed to clean up temp file sorvik_busy: Device or resource busy")), 2);
    EXPECT_EQ(names(), QStringList({QStringLiteral("precious"), QStringLiteral("sorvik_busy")}));
}

}  // namespace
}  // namespace sorvik
