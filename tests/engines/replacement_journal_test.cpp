// What a start finds of a run that was killed while it replaced a file.

#include <gtest/gtest.h>

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "engines/file_replacement.h"
#include "engines/replacement_journal.h"
#include "platform/log.h"

namespace sorvik {
namespace {

class ReplacementJournal : public testing::Test {
protected:
    ReplacementJournal() {
        setLogSink([this](const QString& line) { lines << line; });
        qputenv("XDG_STATE_HOME", folder.filePath(QStringLiteral("state")).toUtf8());
    }
    ~ReplacementJournal() override {
        setLogSink({});
        qputenv("XDG_STATE_HOME", before);
    }

    void write(const QString& path, const QByteArray& content) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    [[nodiscard]] static QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    [[nodiscard]] static QStringList notes() { return QDir(replacementNotesFolder()).entryList(QDir::Files); }

    /// Leaves a note as a killed process does.
    void leaveNote() {
        ReplacementNote note(replacement);
        note.keep();
    }

    QByteArray before = qgetenv("XDG_STATE_HOME");
    QTemporaryDir folder;
    QStringList lines;
    QString original = folder.filePath(QStringLiteral("a ü.jpg"));
    QString backup = backupPath(original);
    Replacement replacement{original, backup, 3};
};

TEST_F(ReplacementJournal, PutsAnOriginalBack) {
    write(backup, "original");
    leaveNote();
    recoverReplacements();
    EXPECT_EQ(read(original), "original");
    EXPECT_EQ(read(backup), "(none)");
    EXPECT_EQ(notes(), QStringList());
    EXPECT_EQ(lines,
              QStringList{QStringLiteral("Restored from its backup after an interrupted replacement: ") + original});
}

TEST_F(ReplacementJournal, TakesTheBackupAwayWhenTheNewContentStands) {
    write(backup, "original");
    write(original, "new");
    leaveNote();
    recoverReplacements();
    EXPECT_EQ(read(original), "new");
    EXPECT_EQ(read(backup), "(none)");
    EXPECT_EQ(notes(), QStringList());
}

TEST_F(ReplacementJournal, TouchesNothingThatIsNotItsOwn) {
    write(backup, "original");
    write(original, "somebody else's");
    leaveNote();
    recoverReplacements();
    EXPECT_EQ(read(original), "somebody else's");
    EXPECT_EQ(read(backup), "original");
    EXPECT_EQ(notes().size(), 1) << "said again at the next start";

    QFile::remove(original);
    QFile::remove(QDir(replacementNotesFolder()).filePath(notes().front()));
    {
        const ReplacementNote running(replacement);
        recoverReplacements();
        EXPECT_EQ(read(backup), "original") << "a running process holds the note";
    }
}

TEST_F(ReplacementJournal, WaitsForADiskThatIsGone) {
    const QString away = folder.filePath(QStringLiteral("disk"));
    ASSERT_TRUE(QDir().mkpath(away));
    replacement = {away + QStringLiteral("/a.jpg"), away + QStringLiteral("/a.jpg.backup.X"), 3};
    write(replacement.backup, "original");
    leaveNote();
    ASSERT_TRUE(QDir().rename(away, away + QStringLiteral(".off")));
    recoverReplacements();
    EXPECT_EQ(notes().size(), 1);
    ASSERT_TRUE(QDir().rename(away + QStringLiteral(".off"), away));
    recoverReplacements();
    EXPECT_EQ(read(replacement.original), "original");
    EXPECT_EQ(notes(), QStringList());
}

TEST_F(ReplacementJournal, RemovesWhatAKilledProcessHasHalfWritten) {
    write(original, "original");
    const QString dead = folder.filePath(QStringLiteral(".sorvik_4194305_ab"));  // beyond all numbers of processes
    const QString alive = folder.filePath(QStringLiteral(".sorvik_%1_ab").arg(getpid()));
    write(dead, "half");
    write(alive, "half");
    leaveNote();
    recoverReplacements();
    EXPECT_FALSE(QFile::exists(dead));
    EXPECT_TRUE(QFile::exists(alive));
}

TEST_F(ReplacementJournal, ForgetsWhatHadNotBegunAndWhatCannotBeRead) {
    write(original, "original");
    leaveNote();
    write(replacementNotesFolder() + QStringLiteral("/cut.replacement"), R"({"original":"/a","back)");
    recoverReplacements();
    EXPECT_EQ(read(original), "original");
    EXPECT_EQ(notes(), QStringList());
    EXPECT_EQ(lines, QStringList());
}

TEST_F(ReplacementJournal, IsEmptyAfterAReplacementThatEnded) {
    write(original, "original");
    write(folder.filePath(QStringLiteral("new")), "new");
    EXPECT_TRUE(replaceFile(original, folder.filePath(QStringLiteral("new"))));
    EXPECT_FALSE(replaceFile(original, folder.path())) << "a folder is no content";
    EXPECT_EQ(read(original), "new");
    EXPECT_EQ(notes(), QStringList());
}

}  // namespace
}  // namespace sorvik
