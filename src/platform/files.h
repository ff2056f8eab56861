#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>

namespace sorvik {

/// What went wrong with a file, in the system's words: "No space left on device: /a/b.png".
struct FileError {
    int errorNumber = 0;  ///< errno
    QString description;
};

/// Puts `bytes` at `path`, all of them or none: a hidden temporary file ".sorvik_<process>_..." in the same folder is
/// written (every count checked), synced and renamed over the path, then the folder is synced. A
/// reader sees the old content or the new one. Keeps the mode of a file that stands there and, where this
/// process may, its owner and group; a new file gets 0666 less the umask. A path that is a link to a file
/// puts the content into the link's target; a link to nothing is an error, and so are a file without
/// write permission and what is no regular file. Names of 255 bytes work. Leaves nothing behind on failure.
/// Absent result means success. Blocks.
[[nodiscard]] std::optional<FileError> writeAtomically(const QString& path, const QByteArray& bytes);

/// The whole content of a regular file; a FIFO is never waited for. On failure an empty result and, if
/// given, `error` set.
[[nodiscard]] std::optional<QByteArray> readFile(const QString& path, FileError* error = nullptr);

/// Moves a regular file over what stands at `to`, also between file systems (then by a copy that is written
/// aside, synced and renamed, before the source is removed). For `to` the rules of writeAtomically hold: links,
/// permissions, and the mode and owner of a replaced file, which go over to the new one; where nothing stands,
/// the file keeps its own. The content is on the disk before the rename. Absent result means success,
/// also when only the source of a copy could not be removed. Blocks.
[[nodiscard]] std::optional<FileError> moveFile(const QString& from, const QString& to);

/// Copies a regular file to a name that is free, as moveFile() writes a copy: aside, synced, renamed. The copy gets the
/// mode and, where this process may, the owner and group of the file at `attributesOf`, before anybody can see it.
[[nodiscard]] std::optional<FileError> copyFile(const QString& from, const QString& to, const QString& attributesOf);

/// Removes the hidden temporary files of the functions above from a folder that processes have left there which are
/// gone. Best effort.
void removeAbandonedFiles(const QString& folder);

/// Size in bytes; absent with `error` set when the file's attributes can't be read.
[[nodiscard]] std::optional<std::int64_t> fileSize(const QString& path, FileError* error = nullptr);

/// Which content a path holds at a moment: changes when the file is replaced or written to.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0;  ///< nanoseconds since 1970
    bool operator==(const FileIdentity&) const = default;
};

/// Follows links; absent when there is nothing.
[[nodiscard]] std::optional<FileIdentity> fileIdentity(const QString& path);

}  // namespace sorvik
