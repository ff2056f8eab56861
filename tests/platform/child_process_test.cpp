#include "platform/child_process.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <array>
#include <thread>

namespace sorvik {
namespace {

ChildSetup misbehave(const QStringList& arguments) {
    ChildSetup setup;
    setup.executable = QStringLiteral(SORVIK_MISBEHAVING_CHILD);
    setup.arguments = arguments;
    return setup;
}

/// The child's output, on a thread of its own as in the program's pool.
ChildResult runAside(const ChildSetup& setup) {
    ChildResult result;
    std::thread([&] { result = runChild(setup); }).join();
    return result;
}

ChildResult run(const char* words) { return runAside(misbehave(QString::fromUtf8(words).split(QLatin1Char(' ')))); }

/// In KiB, the highest so far.
long peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST(ChildProcess, TellsHowTheChildEnded) {
    EXPECT_TRUE(run("exit 0").succeeded());
    const ChildResult failed = run("exit 42");
    EXPECT_FALSE(failed.succeeded());
    EXPECT_EQ(failed.exitStatus, 42);
    const ChildResult crashed = run("crash");
    EXPECT_TRUE(crashed.started);
    EXPECT_TRUE(crashed.crashed);
    EXPECT_FALSE(crashed.succeeded());
}

TEST(ChildProcess, HandsArgumentsOnByteForByte) {
    const QStringList arguments{
        QStringLiteral(""),           QStringLiteral("a b"),       QStringLiteral("it's \"here\""),
        QStringLiteral("$(id) `id`"), QStringLiteral("l\nf"),      QStringLiteral("-x"),
        QStringLiteral("*?[0]{a,b}"), QStringLiteral("ä 日本 🖼"), QStringLiteral("\\back\\")};
    const ChildResult result = runAside(misbehave(QStringList(QStringLiteral("echo")) + arguments));
    QByteArray expected;
    for (const QString& argument : arguments) {
        expected += argument.toUtf8() + '\0';
    }
    EXPECT_EQ(result.output, expected);
}

TEST(ChildProcess, TellsWhyNothingStarted) {
    const QTemporaryDir folder;
    const QString plain = folder.filePath(QStringLiteral("plain"));
    const QString script = folder.filePath(QStringLiteral("script"));
    for (const QString& path : {plain, script}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("no program at all");
    }
    chmod(QFile::encodeName(script).constData(), 0755);

    ChildSetup elsewhere = misbehave({QStringLiteral("cwd")});
    elsewhere.workingDirectory = folder.filePath(QStringLiteral("missing"));
    ChildSetup inFile = elsewhere;
    inFile.workingDirectory = plain;
    const std::array<std::pair<ChildSetup, const char*>, 8> rows{{
        {{.executable = folder.filePath(QStringLiteral("none"))}, "No such file or directory"},
        {{.executable = QStringLiteral("sh")}, "No such file or directory"},
        {{.executable = QString()}, "No such file or directory"},
        {{.executable = plain}, "Permission denied"},
        {{.executable = folder.path()}, "Permission denied"},
        {elsewhere, "No such file or directory"},
        {inFile, "Not a directory"},
        {misbehave({QStringLiteral("a.png") + QChar::Null}), "Invalid argument"},
    }};
    for (const auto& [setup, words] : rows) {
        const ChildResult result = runAside(setup);
        EXPECT_FALSE(result.started) << words;
        EXPECT_TRUE(result.launchError.contains(QString::fromUtf8(words))) << result.launchError.toStdString();
    }
    const ChildResult noFormat = runAside({.executable = script});
    EXPECT_FALSE(noFormat.started);
    EXPECT_FALSE(noFormat.launchError.isEmpty());
}

TEST(ChildProcess, FailsWithoutDescriptorsAndRecovers) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const int next = dup(0);
    close(next);
    const rlimit tight{static_cast<rlim_t>(next) + 1, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &tight);
    const ChildResult result = run("exit 0");
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(result.started);
    EXPECT_FALSE(result.launchError.isEmpty());
    EXPECT_TRUE(run("exit 0").succeeded());
}

TEST(ChildProcess, MixesBothStreamsInOrder) { EXPECT_EQ(run("mixed").output, QByteArray("outerrouterrouterr")); }

TEST(ChildProcess, KeepsOnlyTheTailOfAFlood) {
    [[maybe_unused]] const long before = peakMemory();
    const ChildResult result = run("flood 200000000");
    EXPECT_TRUE(result.succeeded());
    EXPECT_EQ(result.output.size(), childOutputLimit);
    EXPECT_TRUE(result.output.endsWith("xxthe end"));
#ifndef __SANITIZE_ADDRESS__  // which keeps freed memory for a while
    EXPECT_LT(peakMemory() - before, 16 * 1024);
#endif
}

TEST(ChildProcess, KeepsTheBeginningOfADocument) {
    ChildSetup setup = misbehave({QStringLiteral("mixed")});
    setup.output = ChildSetup::Output::document;
    EXPECT_EQ(runAside(setup).output, QByteArray("outoutout"));

    ChildSetup flood = setup;
    flood.executable = QStringLiteral("/bin/sh");
    flood.arguments = {QStringLiteral("-c"), QStringLiteral("echo head; head -c 40000000 /dev/zero; echo noise >&2")};
    const ChildResult result = runAside(flood);
    EXPECT_TRUE(result.succeeded());
    EXPECT_EQ(result.output.size(), childDocumentLimit);
    EXPECT_TRUE(result.output.startsWith("head\n"));
}

TEST(ChildProcess, DiscardsBothStreams) {
    ChildSetup setup = misbehave({QStringLiteral("flood"), QStringLiteral("1000000")});
    setup.output = ChildSetup::Output::discarded;
    const ChildResult result = runAside(setup);
    EXPECT_TRUE(result.succeeded());
    EXPECT_TRUE(result.output.isEmpty());
}

TEST(ChildProcess, OutlivesTheStreamsOfItsChild) {
    const ChildResult result = run("deaf 300");
    EXPECT_FALSE(result.crashed);
    EXPECT_EQ(result.exitStatus, 7);
}

TEST(ChildProcess, DoesNotWaitForGrandchildren) {
    for (const char* words : {"leave 8000", "leaveflood 8"}) {
        QElapsedTimer clock;
        clock.start();
        const ChildResult result = run(words);
        EXPECT_EQ(result.exitStatus, 3) << words;
        EXPECT_LT(clock.elapsed(), 4000) << words;
        EXPECT_LE(result.output.size(), childOutputLimit) << words;
    }
    EXPECT_EQ(run("leave 2000").output, QByteArray("left "));
}

TEST(ChildProcess, GivesTheChildNothingButItsStreams) {
    const int stray = open("/dev/null", O_RDONLY);  // inheritable
    ASSERT_GT(stray, STDERR_FILENO);
    EXPECT_EQ(run("descriptors").output, QByteArray());
    EXPECT_EQ(run("input").output, QByteArray("end"));
    close(stray);
}

TEST(ChildProcess, SetsEnvironmentAndWorkingDirectory) {
    const QTemporaryDir folder;
    qputenv("SORVIK_TEST_RAW", "\xff\xfe");
    qputenv("SORVIK_TEST_GONE", "1");
    const auto valueOf = [](const char* name, const std::optional<Environment>& environment) {
        ChildSetup setup = misbehave({QStringLiteral("environment"), QString::fromUtf8(name)});
        setup.environment = environment;
        return runAside(setup).output;
    };
    Environment changed = processEnvironment();
    changed.insert(QStringLiteral("SORVIK_TEST_NEW"), QStringLiteral("ä=b"));
    changed.remove(QStringLiteral("SORVIK_TEST_GONE"));

    EXPECT_EQ(valueOf("SORVIK_TEST_GONE", std::nullopt), QByteArray("1"));
    EXPECT_EQ(valueOf("SORVIK_TEST_GONE", changed), QByteArray("(none)"));
    EXPECT_EQ(valueOf("SORVIK_TEST_NEW", changed), QByteArray("ä=b"));
    EXPECT_EQ(valueOf("SORVIK_TEST_RAW", changed), QByteArray("\xff\xfe"));
    EXPECT_EQ(valueOf("PATH", Environment()), QByteArray("(none)"));

    ChildSetup setup = misbehave({QStringLiteral("cwd")});
    setup.workingDirectory = folder.path();
    EXPECT_EQ(runAside(setup).output, QFile::encodeName(folder.path()));
}

TEST(ChildProcess, RunsOnManyThreadsAtOnce) {
    std::vector<ChildResult> results(8);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < results.size(); ++i) {
        threads.emplace_back([&results, i] {
            for (int round = 0; round < 10; ++round) {
                results[i] = runChild(misbehave({QStringLiteral("echo"), QString::number(i)}));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
        EXPECT_EQ(results[i].output, QByteArray::number(static_cast<qulonglong>(i)) + '\0');
    }
}

}  // namespace
}  // namespace sorvik
