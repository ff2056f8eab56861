#pragma once

#include <QByteArray>
#include <QString>

#include <sys/stat.h>
#include <cstddef>
#include <optional>
#include <utility>

// How a file takes another's place, for the functions of files.h. Paths are in the system's
// encoding; an int that is returned is an errno value, 0 for success.

namespace sorvik {

/// The system's form of a path; absent for one with a NUL, which would name another file.
[[nodiscard]] std::optional<QByteArray> systemPath(const QString& path);

/// Owns a file descriptor.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    [[nodiscard]] int number() const { return number_; }
    [[nodiscard]] bool valid() const { return number_ >= 0; }
    int close();

private:
    int number_;
};

/// Opens a regular file for reading; never waits for a FIFO's writer. `flags` are added to open's.
int openRegularFile(const QByteArray& path, int flags, Descriptor& file, struct stat& attributes);

/// Waits until the file's content is on the disk.
int syncFile(const Descriptor& file);

/// Gives a file the mode of another and, as far as this process may, its owner and group.
void adoptAttributes(const Descriptor& file, const struct stat& model);

/// Gives a file the access list and the user's own attributes of another, where the file system has such.
void adoptExtendedAttributes(const Descriptor& file, const QByteArray& model);

/// What the name of every temporary file begins with; the number of its process and an underscore follow.
inline constexpr const char* temporaryPrefix = ".sorvik_";

/// A name in a folder at which a regular file may be put.
struct Place {
    Descriptor folder;
    QByteArray name;
    std::optional<struct stat> present;  ///< of the file that stands there

    /// Goes on to the target of a link. Refuses what is no regular file, a file that may not be
    /// written, and a link to nothing.
    int find(QByteArray path);

    /// Makes a rename in the folder last. Best effort, as the rename is done and can't be taken back.
    void syncFolder() const;
};

/// A new file beside its place, under a hidden name, removed again unless it is committed.
class ReplacementFile {
public:
    explicit ReplacementFile(const Place& place) : place_(place) {}
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;
    ~ReplacementFile();

    int create();
    [[nodiscard]] const Descriptor& file() const { return file_; }
    int append(const char* bytes, std::size_t count);

    /// Brings the content to the disk, then puts the file in its place.
    int commit();

private:
    const Place& place_;
    Descriptor file_;
    QByteArray temporaryName_;  ///< empty when there is nothing to remove
};

}  // namespace sorvik
