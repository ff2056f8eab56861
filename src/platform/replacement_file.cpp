#include "platform/replacement_file.h"

#include <QFile>
#include <QRandomGenerator>

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <vector>

namespace sorvik {
namespace {

constexpr mode_t allModeBits = 07777;

int errorOfKind(mode_t mode) {
    if (S_ISREG(mode)) {
        return 0;
    }
    return S_ISDIR(mode) ? EISDIR : ENOTSUP;
}

/// A link is replaced by the path that it leads to.
int followLink(QByteArray& path) {
    struct stat attributes {};
    if (lstat(path.constData(), &attributes) != 0) {
        return errno == ENOENT ? 0 : errno;
    }
    if (!S_ISLNK(attributes.st_mode)) {
        return 0;
    }
    const std::unique_ptr<char, decltype(&std::free)> target(realpath(path.constData(), nullptr), &std::free);
    if (!target) {
        return errno;
    }
    path = target.get();
    return 0;
}

/// Who may not write to a file may not replace it either, whatever the folder's mode.
int examinePresent(const QByteArray& path, std::optional<struct stat>& present) {
    struct stat attributes {};
    if (stat(path.constData(), &attributes) != 0) {
        return errno == ENOENT ? 0 : errno;
    }
    if (const int error = errorOfKind(attributes.st_mode); error != 0) {
        return error;
    }
    if (faccessat(AT_FDCWD, path.constData(), W_OK, AT_EACCESS) != 0) {
        return errno;
    }
    present = attributes;
    return 0;
}

/// The rights that a group had must not go to another group.
mode_t withoutGroupRights(mode_t mode) {
    const mode_t others = mode & S_IRWXO;
    return (mode & ~static_cast<mode_t>(S_IRWXG | S_ISGID)) | (mode & S_IRWXG & (others << 3));
}

}  // namespace

std::optional<QByteArray> systemPath(const QString& path) {
    return path.contains(QChar::Null) ? std::nullopt : std::optional(QFile::encodeName(path));
}

int Descriptor::close() {
    const int number = std::exchange(number_, -1);
    return number < 0 || ::close(number) == 0 || errno == EINTR ? 0 : errno;
}

int openRegularFile(const QByteArray& path, int flags, Descriptor& file, struct stat& attributes) {
    file = Descriptor(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | flags));
    if (!file.valid() || fstat(file.number(), &attributes) != 0) {
        return errno;
    }
    return errorOfKind(attributes.st_mode);
}

int syncFile(const Descriptor& file) {
    while (fsync(file.number()) != 0) {
        if (errno == EINVAL || errno == ENOTSUP) {
            return 0;  // a file system that knows no syncing
        }
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

void adoptAttributes(const Descriptor& file, const struct stat& model) {
    constexpr auto unchanged = static_cast<uid_t>(-1);
    struct stat own {};
    if (fstat(file.number(), &own) != 0) {
        return;
    }
    mode_t mode = model.st_mode & allModeBits;
    const bool same = own.st_uid == model.st_uid && own.st_gid == model.st_gid;
    if (!same && fchown(file.number(), model.st_uid, model.st_gid) != 0) {
        mode &= ~static_cast<mode_t>(S_ISUID);
        if (own.st_gid != model.st_gid && fchown(file.number(), unchanged, model.st_gid) != 0) {
            mode = withoutGroupRights(mode);
        }
    }
    fchmod(file.number(), mode);  // file systems without modes refuse it
}

void adoptExtendedAttributes(const Descriptor& file, const QByteArray& model) {
    constexpr std::size_t longest = 65536;  // of the names, and of a value
    std::vector<char> names(longest);
    const ssize_t length = listxattr(model.constData(), names.data(), names.size());
    std::vector<char> value(longest);
    for (ssize_t at = 0; at < length;) {
        const QByteArray name(&names[static_cast<std::size_t>(at)]);
        at += name.size() + 1;
        if (!name.startsWith("user.") && name != "system.posix_acl_access") {
            continue;
        }
        const ssize_t size = getxattr(model.constData(), name.constData(), value.data(), value.size());
        if (size >= 0) {
            fsetxattr(file.number(), name.constData(), value.data(), static_cast<std::size_t>(size), 0);
        }
    }
}

int Place::find(QByteArray path) {
    if (const int error = followLink(path); error != 0) {
        return error;
    }
    if (const int error = examinePresent(path, present); error != 0) {
        return error;
    }
    const qsizetype slash = path.lastIndexOf('/');
    name = path.mid(slash + 1);
    if (name.isEmpty()) {
        return path.isEmpty() ? ENOENT : EISDIR;
    }
    const QByteArray folderPath = slash < 0 ? QByteArray(".") : path.left(slash + 1);
    folder = Descriptor(::open(folderPath.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return folder.valid() ? 0 : errno;
}

void Place::syncFolder() const {
    const Descriptor readable(openat(folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (readable.valid()) {
        syncFile(readable);
    }
}

ReplacementFile::~ReplacementFile() {
    if (!temporaryName_.isEmpty()) {
        unlinkat(place_.folder.number(), temporaryName_.constData(), 0);
    }
}

int ReplacementFile::create() {
    // Until a private file's own mode is given to its replacement nobody else reads along.
    const mode_t mode = place_.present ? 0600 : 0666;
    do {
        temporaryName_ = temporaryPrefix + QByteArray::number(getpid()) + '_' +
                         QByteArray::number(QRandomGenerator::global()->generate64(), 16);
        file_ = Descriptor(openat(place_.folder.number(), temporaryName_.constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    } while (!file_.valid() && errno == EEXIST);
    if (!file_.valid()) {
        temporaryName_.clear();
        return errno;
    }
    return 0;
}

int ReplacementFile::append(const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = ::write(file_.number(), bytes, count);
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        if (written == 0) {
            return ENOSPC;
        }
        if (written > 0) {
            bytes += written;
            count -= static_cast<std::size_t>(written);
        }
    }
    return 0;
}

int ReplacementFile::commit() {
    if (place_.present) {
        adoptAttributes(file_, *place_.present);
    }
    if (const int error = syncFile(file_); error != 0) {
        return error;
    }
    if (const int error = file_.close(); error != 0) {
        return error;
    }
    const int folder = place_.folder.number();
    if (renameat(folder, temporaryName_.constData(), folder, place_.name.constData()) != 0) {
        return errno;
    }
    temporaryName_.clear();
    place_.syncFolder();
    return 0;
}

}  // namespace sorvik
