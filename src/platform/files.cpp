#include "platform/files.h"

#include "platform/replacement_file.h"
#include "platform/system_words.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <new>

namespace sorvik {
namespace {

std::optional<FileError> outcome(int errorNumber, const QString& path) {
    if (errorNumber == 0) {
        return std::nullopt;
    }
    return FileError{errorNumber, systemWords(errorNumber) + QStringLiteral(": ") + path};
}

void report(int errorNumber, const QString& path, FileError* error) {
    if (error != nullptr) {
        *error = outcome(errorNumber, path).value();
    }
}

int replaceContent(const QByteArray& path, const QByteArray& bytes) {
    Place place;
    if (const int error = place.find(path); error != 0) {
        return error;
    }
    ReplacementFile replacement(place);
    if (const int error = replacement.create(); error != 0) {
        return error;
    }
    if (const int error = replacement.append(bytes.constData(), static_cast<std::size_t>(bytes.size())); error != 0) {
        return error;
    }
    return replacement.commit();
}

/// Reads on where the file stands; 0 bytes at its end.
int readSome(const Descriptor& file, char* to, std::size_t capacity, std::size_t& count) {
    ssize_t got = 0;
    do {
        got = ::read(file.number(), to, capacity);
    } while (got < 0 && errno == EINTR);
    count = static_cast<std::size_t>(std::max<ssize_t>(got, 0));
    return got < 0 ? errno : 0;
}

/// The file may grow or shrink meanwhile: its size is but a first guess.
int readToEnd(const Descriptor& file, std::int64_t likelySize, QByteArray& bytes) {
    bytes = QByteArray(static_cast<qsizetype>(likelySize) + 1, Qt::Uninitialized);
    qsizetype filled = 0;
    for (;;) {
        if (filled == bytes.size()) {
            bytes.resize(bytes.size() * 2);
        }
        std::size_t count = 0;
        const auto room = static_cast<std::size_t>(bytes.size() - filled);
        if (const int error = readSome(file, bytes.data() + filled, room, count); error != 0) {
            return error;
        }
        if (count == 0) {
            bytes.truncate(filled);
            return 0;
        }
        filled += static_cast<qsizetype>(count);
    }
}

int copyContent(const Descriptor& from, ReplacementFile& to) {
    std::array<char, std::size_t{128} * 1024> buffer;  // NOLINT(*-member-init): filled by the read
    for (;;) {
        std::size_t count = 0;
        if (const int error = readSome(from, buffer.data(), buffer.size(), count); error != 0 || count == 0) {
            return error;
        }
        if (const int error = to.append(buffer.data(), count); error != 0) {
            return error;
        }
    }
}

int moveByCopy(const Descriptor& source, const struct stat& attributes, const Place& place) {
    ReplacementFile replacement(place);
    if (const int error = replacement.create(); error != 0) {
        return error;
    }
    if (const int error = copyContent(source, replacement); error != 0) {
        return error;
    }
    if (!place.present) {
        adoptAttributes(replacement.file(), attributes);
    }
    const std::array times{attributes.st_atim, attributes.st_mtim};
    futimens(replacement.file().number(), times.data());
    return replacement.commit();
}

int move(const QByteArray& from, const QByteArray& to) {
    Descriptor source;
    struct stat attributes {};
    if (const int error = openRegularFile(from, O_NOFOLLOW, source, attributes); error != 0) {
        return error;
    }
    Place place;
    if (const int error = place.find(to); error != 0) {
        return error;
    }
    if (place.present) {
        adoptAttributes(source, *place.present);
    }
    // A tool wrote it, and nobody has waited for the disk yet.
    if (const int error = syncFile(source); error != 0) {
        return error;
    }
    if (renameat(AT_FDCWD, from.constData(), place.folder.number(), place.name.constData()) == 0) {
        place.syncFolder();
        return 0;
    }
    if (errno != EXDEV) {
        return errno;
    }
    if (const int error = moveByCopy(source, attributes, place); error != 0) {
        return error;
    }
    unlink(from.constData());
    return 0;
}

int copy(const QByteArray& from, const QByteArray& to, const QByteArray& attributesOf) {
    Descriptor source;
    struct stat attributes {};
    if (const int error = openRegularFile(from, 0, source, attributes); error != 0) {
        return error;
    }
    Place place;
    if (const int error = place.find(to); error != 0) {
        return error;
    }
    if (place.present) {
        return EEXIST;
    }
    if (stat(attributesOf.constData(), &place.present.emplace()) != 0) {
        return errno;
    }
    ReplacementFile replacement(place);
    if (const int error = replacement.create(); error != 0) {
        return error;
    }
    if (const int error = copyContent(source, replacement); error != 0) {
        return error;
    }
    adoptExtendedAttributes(replacement.file(), attributesOf);
    return replacement.commit();
}

/// Whether a process of this number has left a temporary file of this name.
bool isAbandoned(const QString& name) {
    const QString rest = name.sliced(QLatin1StringView(temporaryPrefix).size());
    bool isNumber = false;
    const int process = rest.first(std::max<qsizetype>(rest.indexOf(u'_'), 0)).toInt(&isNumber);
    return isNumber && process > 0 && kill(process, 0) != 0 && errno == ESRCH;
}

}  // namespace

std::optional<FileError> writeAtomically(const QString& path, const QByteArray& bytes) {
    const std::optional<QByteArray> target = systemPath(path);
    return outcome(target ? replaceContent(*target, bytes) : EINVAL, path);
}

std::optional<QByteArray> readFile(const QString& path, FileError* error) {
    const auto read = [&](QByteArray& bytes) {
        const std::optional<QByteArray> source = systemPath(path);
        if (!source) {
            return EINVAL;
        }
        Descriptor file;
        struct stat attributes {};
        const int obstacle = openRegularFile(*source, 0, file, attributes);
        return obstacle != 0 ? obstacle : readToEnd(file, attributes.st_size, bytes);
    };
    QByteArray bytes;
    int number = 0;
    try {
        number = read(bytes);
    } catch (const std::bad_alloc&) {
        number = ENOMEM;
    }
    if (number != 0) {
        report(number, path, error);
        return std::nullopt;
    }
    return bytes;
}

std::optional<FileError> moveFile(const QString& from, const QString& to) {
    const std::optional<QByteArray> source = systemPath(from);
    const std::optional<QByteArray> target = systemPath(to);
    if (!source || !target) {
        return outcome(EINVAL, source ? to : from);
    }
    // A missing source is told under its own name, all else under that of the place it was to go to.
    if (faccessat(AT_FDCWD, source->constData(), F_OK, AT_SYMLINK_NOFOLLOW) != 0) {
        return outcome(errno, from);
    }
    return outcome(move(*source, *target), to);
}

std::optional<FileError> copyFile(const QString& from, const QString& to, const QString& attributesOf) {
    const std::optional<QByteArray> source = systemPath(from);
    const std::optional<QByteArray> target = systemPath(to);
    const std::optional<QByteArray> model = systemPath(attributesOf);
    return outcome(source && target && model ? copy(*source, *target, *model) : EINVAL, to);
}

void removeAbandonedFiles(const QString& folder) {
    const QDir directory(folder);
    const QStringList names{QLatin1StringView(temporaryPrefix) + QStringLiteral("*_*")};
    for (const QString& name : directory.entryList(names, QDir::Files | QDir::Hidden | QDir::NoSymLinks)) {
        if (isAbandoned(name)) {
            QFile::remove(directory.filePath(name));
        }
    }
}

std::optional<std::int64_t> fileSize(const QString& path, FileError* error) {
    const std::optional<QByteArray> file = systemPath(path);
    struct stat attributes {};
    if (!file || stat(file->constData(), &attributes) != 0) {
        report(file ? errno : EINVAL, path, error);
        return std::nullopt;
    }
    return attributes.st_size;
}

std::optional<FileIdentity> fileIdentity(const QString& path) {
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    const std::optional<QByteArray> file = systemPath(path);
    struct stat attributes {};
    if (!file || stat(file->constData(), &attributes) != 0) {
        return std::nullopt;
    }
    return FileIdentity{attributes.st_dev, attributes.st_ino, attributes.st_size,
                        attributes.st_mtim.tv_sec * nanosecondsPerSecond + attributes.st_mtim.tv_nsec};
}

}  // namespace sorvik
