#include "platform/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <csignal>
#include <functional>
#include <thread>
#include <vector>

namespace sorvik {
namespace {

constexpr uid_t nobody = 65534;

/// Runs `action` as a user without rights; the kernel keeps these per thread.
void asNobody(const std::function<void()>& action) {
    std::thread([&] {
        if (geteuid() == 0) {
            ASSERT_EQ(syscall(SYS_setresuid, -1, nobody, -1), 0);
        }
        action();
    }).join();
}

class Files : public testing::Test {
protected:
    [[nodiscard]] QString path(const char* name) const { return folder_.filePath(QString::fromUtf8(name)); }

    static QByteArray native(const QString& path) { return QFile::encodeName(path); }

    static void put(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    static struct stat attributes(const QString& path) {
        struct stat result {};
        EXPECT_EQ(lstat(native(path).constData(), &result), 0);
        return result;
    }

    static mode_t mode(const QString& path) { return attributes(path).st_mode & 07777; }

    /// Hidden ones too: nothing may be left behind.
    [[nodiscard]] QStringList names(const QString& folder) const {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    [[nodiscard]] QStringList names() const { return names(folder_.path()); }

    void expectFailure(const std::optional<FileError>& error, int number, const char* words) const {
        ASSERT_TRUE(error);
        EXPECT_EQ(error->errorNumber, number);
        EXPECT_TRUE(error->description.startsWith(QString::fromUtf8(words) + QStringLiteral(": /")))
            << error->description.toStdString();
    }

    QTemporaryDir folder_;
};

TEST_F(Files, WritesAnewAndOverKeepingTheMode) {
    umask(022);
    const QString file = path("a.png");
    EXPECT_FALSE(writeAtomically(file, "first"));
    EXPECT_EQ(mode(file), 0644U);
    chmod(native(file).constData(), 0751);
    const std::optional<FileIdentity> before = fileIdentity(file);
    EXPECT_FALSE(writeAtomically(file, QByteArray(3'000'000, 'b')));
    EXPECT_EQ(mode(file), 0751U);
    EXPECT_EQ(fileSize(file), 3'000'000);
    EXPECT_NE(fileIdentity(file), before);
    EXPECT_FALSE(writeAtomically(file, QByteArray()));
    EXPECT_EQ(readFile(file), QByteArray(""));
    EXPECT_EQ(names(), QStringList(QStringLiteral("a.png")));
}

TEST_F(Files, WritesUnderLongAndRelativeNames) {
    const QString longest(255, QLatin1Char('n'));
    EXPECT_FALSE(writeAtomically(folder_.filePath(longest), "x"));
    EXPECT_EQ(readFile(folder_.filePath(longest)), QByteArray("x"));
    expectFailure(writeAtomically(folder_.filePath(longest + QLatin1Char('n')), "x"), ENAMETOOLONG,
                  "File name too long");
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder_.path());
    EXPECT_FALSE(writeAtomically(QStringLiteral("relative"), "r"));
    QDir::setCurrent(before);
    EXPECT_EQ(readFile(path("relative")), QByteArray("r"));
    EXPECT_EQ(names().size(), 2);
}

TEST_F(Files, PutsContentBehindALinkAndKeepsTheLink) {
    QDir(folder_.path()).mkdir(QStringLiteral("d"));
    put(path("d/target"), "old");
    ASSERT_EQ(symlink("d/target", native(path("link")).constData()), 0);
    ASSERT_EQ(symlink("link", native(path("link2")).constData()), 0);
    EXPECT_FALSE(writeAtomically(path("link2"), "new"));
    EXPECT_TRUE(S_ISLNK(attributes(path("link2")).st_mode));
    EXPECT_EQ(readFile(path("d/target")), QByteArray("new"));
    put(path("moved"), "moved");
    EXPECT_FALSE(moveFile(path("moved"), path("link")));
    EXPECT_TRUE(S_ISLNK(attributes(path("link")).st_mode));
    EXPECT_EQ(readFile(path("d/target")), QByteArray("moved"));

    ASSERT_EQ(symlink("nothing", native(path("dangling")).constData()), 0);
    ASSERT_EQ(symlink("loop", native(path("loop")).constData()), 0);
    expectFailure(writeAtomically(path("dangling"), "x"), ENOENT, "No such file or directory");
    expectFailure(writeAtomically(path("loop"), "x"), ELOOP, "Too many levels of symbolic links");
    EXPECT_EQ(names(path("d")), QStringList(QStringLiteral("target")));
}

TEST_F(Files, RefusesWhatIsNoRegularFile) {
    QDir(folder_.path()).mkdir(QStringLiteral("d"));
    ASSERT_EQ(mkfifo(native(path("fifo")).constData(), 0600), 0);
    put(path("plain"), "x");
    expectFailure(writeAtomically(path("d"), "x"), EISDIR, "Is a directory");
    expectFailure(writeAtomically(path("d/"), "x"), EISDIR, "Is a directory");
    expectFailure(writeAtomically(path("fifo"), "x"), ENOTSUP, "Operation not supported");
    expectFailure(writeAtomically(QStringLiteral("/dev/null"), "x"), ENOTSUP, "Operation not supported");
    expectFailure(writeAtomically(path("none/x"), "x"), ENOENT, "No such file or directory");
    expectFailure(writeAtomically(path("plain/x"), "x"), ENOTDIR, "Not a directory");
    expectFailure(writeAtomically(path("a") + QChar::Null, "x"), EINVAL, "Invalid argument");
    expectFailure(moveFile(path("none"), path("x")), ENOENT, "No such file or directory");
    expectFailure(moveFile(path("plain"), path("d")), EISDIR, "Is a directory");
    EXPECT_TRUE(writeAtomically(QString(), "x"));
    for (const char* name : {"d", "fifo", "none"}) {
        FileError error;
        EXPECT_FALSE(readFile(path(name), &error)) << name;
        EXPECT_NE(error.errorNumber, 0) << name;
    }
    EXPECT_EQ(names().size(), 3);
}

TEST_F(Files, RespectsWhatMayNotBeWritten) {
    chmod(native(folder_.path()).constData(), 0777);
    put(path("locked"), "old");
    chmod(native(path("locked")).constData(), 0444);
    asNobody([&] {
        expectFailure(writeAtomically(path("locked"), "new"), EACCES, "Permission denied");
        EXPECT_FALSE(writeAtomically(path("open"), "new"));
    });
    chmod(native(folder_.path()).constData(), 0555);
    asNobody([&] { expectFailure(writeAtomically(path("other"), "new"), EACCES, "Permission denied"); });
    chmod(native(folder_.path()).constData(), 0755);
    EXPECT_EQ(readFile(path("locked")), QByteArray("old"));
    EXPECT_EQ(names(), QStringList({QStringLiteral("locked"), QStringLiteral("open")}));
}

TEST_F(Files, KeepsTheOwnerAsRoot) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root may give files away";
    }
    put(path("theirs"), "old");
    ASSERT_EQ(chown(native(path("theirs")).constData(), nobody, nobody), 0);
    EXPECT_FALSE(writeAtomically(path("theirs"), "new"));
    EXPECT_EQ(attributes(path("theirs")).st_uid, nobody);
    EXPECT_EQ(attributes(path("theirs")).st_gid, nobody);

    // Who can't keep the group must not give its rights to another one.
    chmod(native(folder_.path()).constData(), 0777);
    put(path("secret"), "old");
    ASSERT_EQ(chown(native(path("secret")).constData(), nobody, 12345), 0);
    chmod(native(path("secret")).constData(), 0664);
    asNobody([&] { EXPECT_FALSE(writeAtomically(path("secret"), "new")); });
    EXPECT_EQ(mode(path("secret")), 0644U);
}

/// A file system of one megabyte, for as long as the object lives.
class SmallDisk {
public:
    explicit SmallDisk(const QString& at) : at_(QFile::encodeName(at)) {
        QDir().mkpath(at);
        mounted_ = mount("tmpfs", at_.constData(), "tmpfs", 0, "size=1m") == 0;
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() {
        if (mounted_) {
            umount2(at_.constData(), MNT_DETACH);
        }
    }
    [[nodiscard]] bool mounted() const { return mounted_; }

private:
    QByteArray at_;
    bool mounted_ = false;
};

TEST_F(Files, LeavesTheOldContentOnAFullDisk) {
    const SmallDisk disk(path("disk"));
    if (!disk.mounted()) {
        GTEST_SKIP() << "may not mount";
    }
    const QString file = path("disk/a");
    EXPECT_FALSE(writeAtomically(file, "old"));
    expectFailure(writeAtomically(file, QByteArray(2'000'000, 'x')), ENOSPC, "No space left on device");
    put(path("big"), QByteArray(2'000'000, 'x'));
    expectFailure(moveFile(path("big"), file), ENOSPC, "No space left on device");
    EXPECT_EQ(readFile(file), QByteArray("old"));
    EXPECT_EQ(fileSize(path("big")), 2'000'000);
    EXPECT_EQ(names(path("disk")), QStringList(QStringLiteral("a")));
}

TEST_F(Files, LeavesTheOldContentWhenAWriteIsCutShort) {
    const QString file = path("a");
    EXPECT_FALSE(writeAtomically(file, "old"));
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit tight{100'000, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &tight);
    const std::optional<FileError> error = writeAtomically(file, QByteArray(150'000, 'x'));
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    expectFailure(error, EFBIG, "File too large");
    EXPECT_EQ(readFile(file), QByteArray("old"));
    EXPECT_EQ(names(), QStringList(QStringLiteral("a")));
}

TEST_F(Files, ConcurrentWritersLeaveOneWholeContent) {
    const QString file = path("a");
    EXPECT_FALSE(writeAtomically(file, QByteArray(100'000, 'z')));
    std::vector<std::thread> writers;
    for (const char letter : {'a', 'b', 'c'}) {
        writers.emplace_back([&, letter] {
            for (int round = 0; round < 20; ++round) {
                EXPECT_FALSE(writeAtomically(file, QByteArray(100'000, letter)));
            }
        });
    }
    for (int round = 0; round < 200; ++round) {
        const std::optional<QByteArray> seen = readFile(file);
        ASSERT_TRUE(seen && seen->size() == 100'000);
        ASSERT_EQ(seen->count(seen->front()), 100'000);
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    EXPECT_EQ(names().size(), 1);
}

TEST_F(Files, MovesOverWhatStandsThere) {
    put(path("from"), "new");
    chmod(native(path("from")).constData(), 0600);
    put(path("to"), "old");
    chmod(native(path("to")).constData(), 0640);
    EXPECT_FALSE(moveFile(path("from"), path("to")));
    EXPECT_EQ(readFile(path("to")), QByteArray("new"));
    EXPECT_EQ(mode(path("to")), 0640U);
    EXPECT_EQ(names(), QStringList(QStringLiteral("to")));
    EXPECT_FALSE(moveFile(path("to"), path("to")));
    EXPECT_FALSE(moveFile(path("to"), path("fresh")));
    EXPECT_EQ(mode(path("fresh")), 0640U);
}

TEST_F(Files, MovesBetweenFileSystems) {
    const SmallDisk disk(path("disk"));
    if (!disk.mounted()) {
        GTEST_SKIP() << "may not mount";
    }
    put(path("from"), QByteArray(300'000, 'm'));
    chmod(native(path("from")).constData(), 0604);
    const timespec modified{1'000'000'000, 5000};
    const timespec times[]{modified, modified};
    utimensat(AT_FDCWD, native(path("from")).constData(), times, 0);
    EXPECT_FALSE(moveFile(path("from"), path("disk/to")));
    EXPECT_EQ(readFile(path("disk/to")), QByteArray(300'000, 'm'));
    EXPECT_EQ(mode(path("disk/to")), 0604U);
    EXPECT_EQ(attributes(path("disk/to")).st_mtim.tv_sec, modified.tv_sec);
    EXPECT_EQ(names(), QStringList(QStringLiteral("disk")));
    EXPECT_EQ(names(path("disk")), QStringList(QStringLiteral("to")));
}

}  // namespace
}  // namespace sorvik
