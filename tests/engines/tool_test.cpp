// Finding the tools, their environment, and what counts as a successful run.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "captured_log.h"
#include "engines/magick_run.h"
#include "engines/process_config_cache.h"

namespace sorvik {
namespace {

class FakeBundle {
public:
    FakeBundle() { QDir(folder_.path()).mkpath(QStringLiteral("Contents/Resources")); }
    [[nodiscard]] QString resources() const { return folder_.filePath(QStringLiteral("Contents/Resources")); }
    [[nodiscard]] Bundle bundle() const { return Bundle(folder_.path()); }
    void add(const char* name) const {
        QFile file(resources() + u'/' + QString::fromLatin1(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

private:
    QTemporaryDir folder_;
};

TEST(ProcessConfigCache, FindsToolsInTheBundleOnlyAndKeepsWhatItFound) {
    const FakeBundle fake;
    ProcessConfigCache cache(fake.bundle());
    EXPECT_FALSE(cache.resolveMagickPath());
    EXPECT_FALSE(cache.makeMagickTask());
    EXPECT_EQ(cache.bundledToolsIntegrity(), QStringLiteral("false"));

    // A search that failed is made again; one that succeeded is not.
    fake.add("magick");
    fake.add("gs");
    const QString magick = fake.resources() + QStringLiteral("/magick");
    EXPECT_EQ(cache.resolveMagickPath(), magick);
    EXPECT_EQ(cache.bundledToolsIntegrity(), QStringLiteral("true"));
    QFile::remove(magick);
    EXPECT_EQ(cache.resolveMagickPath(), magick);

    const auto task = cache.makeMagickTask();
    ASSERT_TRUE(task);
    EXPECT_EQ(task->executable, magick);
    EXPECT_EQ(task->workingDirectory, fake.resources());
}

TEST(MagickEnvironment, LaysTheBundleOverWhatIsInherited) {
    const auto text = [](const char* literal) { return QString::fromLatin1(literal); };
    const Environment inherited{
        {text("PATH"), text("/bin")}, {text("HOME"), text("/h")}, {text("LD_LIBRARY_PATH"), text("/l")}};
    const Environment expected{{text("PATH"), text("/R:/bin")},
                               {text("HOME"), text("/h")},
                               {text("LD_LIBRARY_PATH"), text("/F:/l")},
                               {text("MAGICK_CONFIGURE_PATH"), text("/R")},
                               {text("GS_LIB"), text("/R")},
                               {text("GS_RESOURCEDIR"), text("/R")},
                               {text("GS_FONTPATH"), text("/R")}};
    EXPECT_EQ(magickEnvironment(inherited, text("/R"), text("/F"), true), expected);

    // No trailing colon behind an empty path, and no variable at all for what is not there.
    const Environment bare = magickEnvironment({{text("PATH"), QString()}}, text("/R"), text("/F"), false);
    EXPECT_EQ(bare.value(text("PATH")), text("/R"));
    EXPECT_EQ(bare.value(text("LD_LIBRARY_PATH")), text("/F"));
    EXPECT_FALSE(bare.contains(text("MAGICK_CONFIGURE_PATH")));
    EXPECT_EQ(magickEnvironment({}, std::nullopt, text("/F"), true).keys(), QStringList{text("LD_LIBRARY_PATH")});
}

class MagickRun : public testing::Test {
protected:
    [[nodiscard]] bool run(const QStringList& arguments) const {
        ChildSetup task;
        task.executable = QStringLiteral(SORVIK_MISBEHAVING_CHILD);
        task.arguments = arguments;
        return runMagickTask(task, output(), QStringLiteral("Trial"));
    }
    [[nodiscard]] QString output() const { return folder_.filePath(QStringLiteral("out.png")); }

    QTemporaryDir folder_;
    CapturedLog log_;
};

TEST_F(MagickRun, SucceedsOnlyWithStatusZeroAndAFileWithContent) {
    EXPECT_FALSE(run({QStringLiteral("exit"), QStringLiteral("0")})) << "no file at all";
    QFile(output()).open(QIODevice::WriteOnly);
    EXPECT_FALSE(run({QStringLiteral("exit"), QStringLiteral("0")})) << "the temporary file is still empty";
    EXPECT_TRUE(run({QStringLiteral("write"), output()}));
    EXPECT_FALSE(run({QStringLiteral("exit"), QStringLiteral("3")})) << "a file is not enough";
    EXPECT_FALSE(run({QStringLiteral("crash")}));
}

TEST_F(MagickRun, KeepsSilentWhenTheToolBlamesTheFile) {
    EXPECT_TRUE(blamesTheFile(QStringLiteral("convert: PERMISSION Denied `x'")));
    EXPECT_TRUE(blamesTheFile(QStringLiteral("x: not a valid file")));
    EXPECT_FALSE(blamesTheFile(QStringLiteral("not a valid image")));
    EXPECT_FALSE(run({QStringLiteral("echo"), QStringLiteral("unable to open image")}));
    EXPECT_FALSE(run({QStringLiteral("echo"), QStringLiteral("something else")}));
    ASSERT_EQ(log_.lines().size(), 1);
    EXPECT_TRUE(log_.lines().front().startsWith(QStringLiteral("Trial: "))) << log_.lines().front().toStdString();
}

TEST_F(MagickRun, TellsAFailedLaunchInWordsForPeople) {
    ChildSetup task;
    task.executable = QStringLiteral("/nonexistent/magick");
    EXPECT_FALSE(runMagickTask(task, output(), QStringLiteral("Trial")));
    ASSERT_EQ(log_.lines().size(), 1);
    EXPECT_TRUE(log_.lines().front().startsWith(QStringLiteral("Trial failed: The ")))
        << log_.lines().front().toStdString();
}

TEST(DecodedOutput, IsUtf8OrTheFallback) {
    const auto fallback = QStringLiteral("Unknown output");
    EXPECT_EQ(decodedOutput("gr\xC3\xBC\xC3\x9F", fallback), QStringLiteral("gr\u00fc\u00df"));
    EXPECT_EQ(decodedOutput("bad \xFF", fallback), fallback);
    // A long output is cut at its head, perhaps inside a character.
    const QByteArray cut = "\xBC" + QByteArray(childOutputLimit - 1, 'a');
    EXPECT_EQ(decodedOutput(cut, fallback).size(), childOutputLimit - 1);
}

}  // namespace
}  // namespace sorvik
