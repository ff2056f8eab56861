#include "engines/file_replacement.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <optional>

#include "core/vocabulary/path_names.h"
#include "engines/replacement_journal.h"
#include "platform/files.h"
#include "platform/log.h"

namespace sorvik {
namespace {

constexpr qsizetype longestFileName = 255;  // bytes, on every file system in use here

QString prefix(Replacer replacer) {
    return replacer == Replacer::imageConverter ? QStringLiteral("[ImageConverter] ")
                                                : QStringLiteral("[SIPSConverter] ");
}

/// As much of a name's beginning as `bytes` hold, cut between characters.
QString shortened(QString name, qsizetype bytes) {
    while (name.toUtf8().size() > bytes) {
        name.chop(name.back().isLowSurrogate() ? 2 : 1);
    }
    return name;
}

/// Copies the new content to the original's place, whole, and looks that it stands there.
std::optional<QString> placeContent(const QString& original, const QString& newContentPath, const QString& backup) {
    if (const auto error = copyFile(newContentPath, original, backup)) {
        return error->description;
    }
    return QFileInfo::exists(original) ? std::nullopt : std::optional(QStringLiteral("File copy verification failed"));
}

/// After `failure`: puts the original back. False when it is left in its backup.
bool restore(Replacer replacer, const QString& original, const QString& backup, const QString& failure) {
    if (const auto error = moveFile(backup, original)) {
        logLine(prefix(replacer) +
                QStringLiteral("CRITICAL: Failed to restore backup after failed replacement. Original: %1, Restore: %2")
                    .arg(failure, error->description));
        return false;
    }
    logLine(prefix(replacer) + QStringLiteral("Restored original file after failed replacement: ") + failure);
    return true;
}

void tell(const QString& words, QString* reason) {
    if (reason != nullptr) {
        *reason = words;
    }
}

}  // namespace

QString backupPath(const QString& originalPath) {
    const QString addition = QStringLiteral(".backup.") + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    const QString name = fileName(originalPath).toString();
    const QStringView folder = QStringView(originalPath).chopped(name.size());
    return folder.toString() + shortened(name, longestFileName - addition.size()) + addition;
}

bool replaceFile(const QString& originalPath, const QString& newContentPath, Replacer replacer, QString* reason) {
    if (!QFileInfo::exists(originalPath)) {
        logLine(prefix(replacer) + QStringLiteral("Original file does not exist: ") + originalPath);
        return false;
    }
    if (!QFileInfo::exists(newContentPath)) {
        logLine(prefix(replacer) + QStringLiteral("New content file does not exist: ") + newContentPath);
        return false;
    }
    // A link stays a link: what it points to is what is replaced.
    const QString original = QFileInfo(originalPath).canonicalFilePath();
    const QString backup = backupPath(original);
    ReplacementNote note({original, backup, fileSize(newContentPath).value_or(0)});
    if (const auto error = moveFile(original, backup)) {
        logLine(prefix(replacer) + QStringLiteral("Failed to create backup before file replacement: ") +
                error->description);
        tell(error->description, reason);
        return false;
    }
    if (const auto failure = placeContent(original, newContentPath, backup)) {
        tell(*failure, reason);
        if (!restore(replacer, original, backup, *failure)) {
            note.keep();
        }
        return false;
    }
    QFile::remove(backup);
    return true;
}

}  // namespace sorvik
