#include "engines/replacement_journal.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <array>

#include "core/vocabulary/indexed_table.h"
#include "core/vocabulary/path_names.h"
#include "platform/files.h"
#include "platform/log.h"

namespace sorvik {
namespace {

const QString noteExtension = QStringLiteral("replacement");
const QString originalKey = QStringLiteral("original");
const QString backupKey = QStringLiteral("backup");
const QString newSizeKey = QStringLiteral("newSize");

QByteArray encoded(const Replacement& replacement) {
    return QJsonDocument(QJsonObject{{originalKey, replacement.original},
                                     {backupKey, replacement.backup},
                                     {newSizeKey, static_cast<qint64>(replacement.newSize)}})
        .toJson(QJsonDocument::Compact);
}

/// Absent for a note that was not written to its end: the replacement had not begun then.
std::optional<Replacement> decoded(const QByteArray& bytes) {
    const QJsonObject note = QJsonDocument::fromJson(bytes).object();
    Replacement replacement{note[originalKey].toString(), note[backupKey].toString(), note[newSizeKey].toInteger(-1)};
    const bool complete = !replacement.original.isEmpty() && !replacement.backup.isEmpty() && replacement.newSize >= 0;
    return complete ? std::optional(replacement) : std::nullopt;
}

bool writeAll(int file, const QByteArray& bytes) {
    return ::write(file, bytes.constData(), static_cast<std::size_t>(bytes.size())) == bytes.size();
}

int openNote(const QString& path, int flags) {
    return ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
}

/// Whether anything bears this name, a link to nothing too.
bool stands(const QString& path) {
    struct stat attributes {};
    return lstat(QFile::encodeName(path).constData(), &attributes) == 0;
}

struct RecoveryRow {
    Recovery recovery;
    const char* words;  // nullptr: not worth a line
};

constexpr std::array recoveryWords{
    RecoveryRow{Recovery::notBegun, nullptr},
    RecoveryRow{Recovery::restored, "Restored from its backup after an interrupted replacement: "},
    RecoveryRow{Recovery::completed, "Removed the backup of a replacement that was complete: "},
    RecoveryRow{Recovery::leftAlone, "An interrupted replacement left a backup beside: "},
};
static_assert(isIndexedBy(recoveryWords, &RecoveryRow::recovery) &&
              recoveryWords.size() == static_cast<std::size_t>(Recovery::leftAlone) + 1);

void logRecovery(const Replacement& replacement, Recovery recovery) {
    if (const char* words = recoveryWords[static_cast<std::size_t>(recovery)].words) {
        logLine(QString::fromLatin1(words) + replacement.original);
    }
}

/// One note whose process is gone. One that can't be acted on now stays for a later start.
void recoverNote(const QString& path) {
    const int file = openNote(path, O_RDWR);
    if (file < 0) {
        return;
    }
    if (flock(file, LOCK_EX | LOCK_NB) == 0) {
        const auto replacement = decoded(readFile(path).value_or(QByteArray()));
        const Recovery recovery = replacement ? recover(*replacement) : Recovery::notBegun;
        if (replacement) {
            logRecovery(*replacement, recovery);
        }
        if (recovery != Recovery::leftAlone) {
            QFile::remove(path);
        }
    }
    ::close(file);
}

}  // namespace

ReplacementNote::ReplacementNote(const Replacement& replacement) {
    const QString folder = replacementNotesFolder();
    QDir().mkpath(folder);
    // It gets the name under which a start looks for notes only when it is locked and written.
    const QString name = folder + u'/' + QUuid::createUuid().toString(QUuid::WithoutBraces);
    path_ = name + u'.' + noteExtension;
    file_ = openNote(name, O_WRONLY | O_CREAT | O_EXCL);
    if (file_ < 0 || flock(file_, LOCK_EX | LOCK_NB) != 0 || !writeAll(file_, encoded(replacement)) ||
        !QFile::rename(name, path_)) {
        QFile::remove(name);
        logLine(QStringLiteral("Warning: no note could be written about the replacement of ") + replacement.original);
    }
}

ReplacementNote::~ReplacementNote() {
    if (file_ < 0) {
        return;
    }
    if (!kept_) {
        QFile::remove(path_);
    }
    ::close(file_);
}

Recovery recover(const Replacement& replacement) {
    const QString folder = parentDirectory(replacement.original);
    if (!QFileInfo(folder).isDir()) {
        return Recovery::leftAlone;  // its disk may come back
    }
    removeAbandonedFiles(folder);
    if (!stands(replacement.backup)) {
        return Recovery::notBegun;
    }
    if (!stands(replacement.original)) {
        return moveFile(replacement.backup, replacement.original) ? Recovery::leftAlone : Recovery::restored;
    }
    // New content takes its place by one rename: what stands there is whole.
    const bool complete = fileSize(replacement.original) == replacement.newSize;
    return complete && QFile::remove(replacement.backup) ? Recovery::completed : Recovery::leftAlone;
}

void recoverReplacements() {
    const QDir folder(replacementNotesFolder());
    for (const QString& note : folder.entryList({QStringLiteral("*.") + noteExtension}, QDir::Files | QDir::Hidden)) {
        recoverNote(folder.filePath(note));
    }
}

QString replacementNotesFolder() {
    const QString configured = qEnvironmentVariable("XDG_STATE_HOME");
    // A relative path is to be ignored there (XDG base directories).
    const QString state =
        QDir::isAbsolutePath(configured) ? configured : QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/sorvik/replacements");
}

}  // namespace sorvik
