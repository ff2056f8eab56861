// The gate in front of the tools, aliases, replacement and the check of results.

#include <gtest/gtest.h>

#include <sys/xattr.h>

#include <array>

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

#include "engines/file_replacement.h"
#include "engines/image_signature.h"
#include "engines/path_alias.h"
#include "engines/path_safety.h"
#include "engines/source_check.h"
#include "platform/log.h"
#include "services/process_caches.h"

namespace sorvik {
namespace {

using namespace std::chrono_literals;

void write(const QString& path, const QByteArray& content) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(content);
}

QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

TEST(NormalizedPath, StandardisesAndRefusesOnlyWhatNoToolCanTake) {
    const auto normalized = [](const QString& path) {
        return normalizedPath(path, GateCaller::imageConverter).value_or(QStringLiteral("(none)"));
    };
    EXPECT_EQ(normalized(QStringLiteral("/a/./b//c/../d/")), QStringLiteral("/a/b/d"));
    EXPECT_EQ(normalized(QStringLiteral("/.")), QStringLiteral("/"));
    EXPECT_EQ(normalized(QStringLiteral("/../..")), QStringLiteral("/"));
    EXPECT_EQ(normalized(QStringLiteral("../x")), QStringLiteral("../x"));
    EXPECT_EQ(normalized(QStringLiteral("~/x")), QDir::homePath() + QStringLiteral("/x"));
    EXPECT_EQ(normalized(QStringLiteral("/a/~")), QStringLiteral("/a/~"));
    EXPECT_EQ(normalized(QString()), QStringLiteral("(none)"));
    EXPECT_EQ(normalized(QStringLiteral(".")), QStringLiteral("(none)"));
    EXPECT_EQ(normalized(QString(QStringLiteral("/a")) + QChar(u'\0') + u'b'), QStringLiteral("(none)"));
}

TEST(FileValidationCache, KeepsAnswersForLessThanFiveSeconds) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    auto now = std::chrono::steady_clock::time_point{};
    FileValidationCache cache([&] { return now; });
    EXPECT_FALSE(cache.exists(path));
    write(path, "x");
    now += 4999ms;
    EXPECT_FALSE(cache.exists(path)) << "a negative answer is kept too";
    now += 1ms;
    EXPECT_TRUE(cache.exists(path)) << "at five seconds it is stale";
    QFile::remove(path);
    now += 4s;
    EXPECT_TRUE(cache.exists(path));
}

TEST(PathAlias, KeepsPlainPathsAndHidesSyntax) {
    const QTemporaryDir folder;
    const QString plain = folder.filePath(QStringLiteral("a b:c@~|$(x)`\\%d.png"));
    EXPECT_EQ(PathAlias::forInput(plain).path(), plain);

    const QString odd = folder.filePath(QStringLiteral("ph[1]*?{x}.png"));
    write(odd, "pixels");
    QString alias;
    {
        const PathAlias input = PathAlias::forInput(odd);
        alias = input.path();
        EXPECT_FALSE(isInputSyntax(alias));
        EXPECT_TRUE(alias.endsWith(QStringLiteral(".png")));
        EXPECT_EQ(read(alias), "pixels");
    }
    EXPECT_FALSE(QFile::exists(alias));
    EXPECT_EQ(read(odd), "pixels") << "the alias goes, the file stays";
}

TEST(PathAlias, MovesAnOutputIntoPlace) {
    const QTemporaryDir folder;
    const QString odd = folder.filePath(QStringLiteral("50%d.webp"));
    const PathAlias output = PathAlias::forOutput(odd);
    ASSERT_NE(output.path(), odd);
    EXPECT_FALSE(output.settle()) << "the tool has written nothing";
    write(output.path(), "result");
    EXPECT_TRUE(output.settle());
    EXPECT_EQ(read(odd), "result");
}

TEST(ReplaceFile, PutsTheNewContentInPlaceAndLeavesNoBackup) {
    const QTemporaryDir folder;
    const QString original = folder.filePath(QStringLiteral("a.jpg"));
    const QString content = folder.filePath(QStringLiteral("new"));
    const QString link = folder.filePath(QStringLiteral("link.jpg"));
    write(original, "old");
    write(content, "new content");
    QFile::setPermissions(original, QFile::ReadOwner | QFile::WriteOwner);
    QFile::link(original, link);
    EXPECT_TRUE(replaceFile(link, content));
    EXPECT_EQ(read(original), "new content");
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(read(content), "new content") << "the new content stays the caller's";
    EXPECT_EQ(QFile::permissions(original) & (QFile::ReadGroup | QFile::ReadOther), 0);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 3);
}

TEST(ReplaceFile, KeepsAnAccessListAndTheUsersAttributes) {
    const QTemporaryDir folder;
    const QString original = folder.filePath(QStringLiteral("a.jpg"));
    const QString content = folder.filePath(QStringLiteral("new"));
    write(original, "old");
    write(content, "new content");
    const QByteArray path = original.toUtf8();
    if (setxattr(path.constData(), "user.rating", "5", 1, 0) != 0) {
        GTEST_SKIP() << "the file system knows no attributes";
    }
    ASSERT_TRUE(replaceFile(original, content));
    std::array<char, 8> value{};
    EXPECT_EQ(getxattr(path.constData(), "user.rating", value.data(), value.size()), 1);
    EXPECT_EQ(value[0], '5');
}

TEST(ReplaceFile, FailsWithoutATrace) {
    const QTemporaryDir folder;
    const QString original = folder.filePath(QStringLiteral("a.jpg"));
    write(original, "old");
    EXPECT_FALSE(replaceFile(original, folder.filePath(QStringLiteral("missing"))));
    EXPECT_FALSE(replaceFile(folder.filePath(QStringLiteral("missing")), original));
    // A folder as new content can't be read: the backup comes back.
    EXPECT_FALSE(replaceFile(original, folder.path()));
    EXPECT_EQ(read(original), "old");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("a.jpg")});
}

TEST(ReplaceFile, FindsRoomForABackupOfTheLongestName) {
    const QTemporaryDir folder;
    const QString original = folder.filePath(QString(125, QChar(0xfc)) + QStringLiteral(".jpg"));
    const QString content = folder.filePath(QStringLiteral("new"));
    write(original, "old");
    write(content, "new content");
    EXPECT_LE(QFileInfo(backupPath(original)).fileName().toUtf8().size(), 255);
    EXPECT_TRUE(replaceFile(original, content));
    EXPECT_EQ(read(original), "new content");
}

TEST(ImageSignature, KnowsTheBeginnings) {
    const QByteArray webp("RIFF\0\0\0\0WEBP", 12);
    EXPECT_TRUE(hasSignature(webp, ImageFormat::webp));
    EXPECT_FALSE(hasSignature(webp.left(11), ImageFormat::webp));
    EXPECT_FALSE(hasSignature(QByteArray("XIFF\0\0\0\0WEBP", 12), ImageFormat::webp));
    EXPECT_TRUE(hasSignature(QByteArray("II*\0", 4), ImageFormat::tiff));
    EXPECT_TRUE(hasSignature(QByteArray("MM\0*", 4), ImageFormat::tiff));
    EXPECT_FALSE(hasSignature(QByteArray("II\0*", 4), ImageFormat::tiff));
    EXPECT_TRUE(hasSignature("\xFF\xD8\xFF\xE0", ImageFormat::jpeg));
    EXPECT_FALSE(hasSignature("\xFF\xD8\xFF", ImageFormat::jpeg)) << "three bytes are no file";
    EXPECT_FALSE(hasSignature("GIF8", ImageFormat::png));
    EXPECT_TRUE(hasSignature("anything", ImageFormat::heic));
    EXPECT_FALSE(hasSignature("any", ImageFormat::avif));
}

TEST(ImageSignature, RemembersAnswersUntilCleared) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.gif"));
    clearSignatureCache();
    EXPECT_FALSE(isValidImageFile(path, ImageFormat::gif)) << "no file; not remembered";
    write(path, "GIF89a");
    EXPECT_TRUE(isValidImageFile(path, ImageFormat::gif));
    EXPECT_TRUE(isValidImageFile(path, ImageFormat::png)) << "the answer of the path, whatever is asked";
    clearSignatureCache();
    EXPECT_FALSE(isValidImageFile(path, ImageFormat::png));
    clearProcessCaches();
    EXPECT_TRUE(isValidImageFile(path, ImageFormat::gif));
    clearSignatureCache();
}

TEST(SourceCheck, SaysWhatThePathIs) {
    const QTemporaryDir folder;
    const auto path = [&](const char* name) { return folder.filePath(QString::fromLatin1(name)); };
    write(path("empty.png"), "");
    write(path("good.png"), "x");
    QDir(folder.path()).mkdir(QStringLiteral("folder.png"));
    ASSERT_EQ(mkfifo(path("pipe.png").toLocal8Bit().constData(), 0600), 0);
    QFile::link(path("nowhere"), path("dangling.png"));
    QFile::link(path("loop.png"), path("loop.png"));
    QFile::link(QStringLiteral("/dev/zero"), path("device.png"));
    QFile::link(path("good.png"), path("link.png"));
    const auto said = [&](const char* name) {
        const auto refusal = checkSource(path(name));
        return refusal ? refusal->sentence() : QString();
    };
    EXPECT_EQ(said("empty.png"), sentence(Refusal::emptyFile));
    EXPECT_EQ(said("folder.png"), sentence(Refusal::folder));
    EXPECT_EQ(said("pipe.png"), sentence(Refusal::namedPipe));
    EXPECT_EQ(said("dangling.png"), sentence(Refusal::danglingLink));
    EXPECT_EQ(said("loop.png"), sentence(Refusal::loopingLink));
    EXPECT_EQ(said("device.png"), sentence(Refusal::device));
    EXPECT_EQ(said("gone.png"), QStringLiteral("The file could not be found. It may have been moved or deleted."));
    EXPECT_EQ(said("link.png"), QString());
    EXPECT_EQ(said("good.png"), QString());
}

TEST(DestinationCheck, SeesWhatStandsInTheWay) {
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir(QStringLiteral("a.png"));
    EXPECT_EQ(checkDestination(folder.filePath(QStringLiteral("a.png")))->sentence(),
              sentence(Refusal::outputNotAFile));
    EXPECT_FALSE(checkDestination(folder.filePath(QStringLiteral("b.png"))));
    EXPECT_EQ(checkDestination(folder.filePath(QStringLiteral("gone/b.png")))->sentence(),
              QStringLiteral("The file could not be found. It may have been moved or deleted."));
}

TEST(DestinationCheck, SeesAFolderThatMayNotBeWrittenTo) {
    const QTemporaryDir folder;
    ASSERT_EQ(chmod(folder.path().toLocal8Bit().constData(), 0555), 0);
    // Rights do not bind root: a child that has given them up looks.
    EXPECT_EXIT(
        {
            const bool bound = getuid() != 0 || setuid(65534) == 0;
            const auto refusal = checkDestination(folder.filePath(QStringLiteral("b.png")));
            const bool said = refusal && refusal->sentence().startsWith(QStringLiteral("Permission denied."));
            std::exit(bound && said ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    ASSERT_EQ(chmod(folder.path().toLocal8Bit().constData(), 0755), 0);
}

}  // namespace
}  // namespace sorvik
