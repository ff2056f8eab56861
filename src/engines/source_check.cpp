#include "engines/source_check.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

#include <array>
#include <cerrno>

#include "core/vocabulary/path_names.h"
#include "platform/system_words.h"

namespace sorvik {
namespace {

struct KindRow {
    mode_t kind;
    Refusal refusal;
};

constexpr std::array notPictures{
    KindRow{S_IFDIR, Refusal::folder}, KindRow{S_IFIFO, Refusal::namedPipe}, KindRow{S_IFSOCK, Refusal::socket},
    KindRow{S_IFCHR, Refusal::device}, KindRow{S_IFBLK, Refusal::device},
};

ConversionError systemError(int errorNumber) {
    // To a user a volume that can't be written to is a matter of permission.
    const bool readOnly = errorNumber == EROFS || errorNumber == EPERM;
    return ConversionError(systemWords(readOnly ? EACCES : errorNumber));
}

/// Why a path could not be followed to a file.
ConversionError unreachable(const QByteArray& name, int errorNumber) {
    struct stat link {};
    if (errorNumber == ELOOP) {
        return ConversionError(Refusal::loopingLink);
    }
    if (errorNumber == ENOENT && lstat(name.constData(), &link) == 0) {
        return ConversionError(Refusal::danglingLink);
    }
    return systemError(errorNumber);
}

}  // namespace

std::optional<ConversionError> checkSource(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat file {};
    if (stat(name.constData(), &file) != 0) {
        return unreachable(name, errno);
    }
    for (const KindRow& row : notPictures) {
        if ((file.st_mode & S_IFMT) == row.kind) {
            return ConversionError(row.refusal);
        }
    }
    if (access(name.constData(), R_OK) != 0) {
        return systemError(errno);
    }
    return file.st_size == 0 ? std::optional(ConversionError(Refusal::emptyFile)) : std::nullopt;
}

std::optional<ConversionError> checkDestination(const QString& path) {
    const QByteArray folder = QFile::encodeName(parentDirectory(path));
    if (access(folder.constData(), W_OK | X_OK) != 0) {
        return systemError(errno);
    }
    const QByteArray name = QFile::encodeName(path);
    struct stat file {};
    if (stat(name.constData(), &file) != 0) {
        if (errno == ENAMETOOLONG) {
            return ConversionError(Refusal::outputNameTooLong);
        }
        const bool free = lstat(name.constData(), &file) != 0;
        return free ? std::nullopt : std::optional(ConversionError(Refusal::outputNotAFile));  // a link to nothing
    }
    if (!S_ISREG(file.st_mode)) {
        return ConversionError(Refusal::outputNotAFile);
    }
    return access(name.constData(), W_OK) == 0 ? std::nullopt : std::optional(systemError(errno));
}

}  // namespace sorvik
