#pragma once

#include <QString>
#include <QThreadPool>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <stdexcept>

namespace sorvik {

/// Thrown when no temporary file could be made.
class TemporaryFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The system's temporary directory; /tmp where TMPDIR names a place that can't be written to.
[[nodiscard]] QString systemTempDirectory();

/// Hands out files in the system's temporary directory under names that never collide, also
/// between threads and processes. Any thread.
class SharedTempFileManager {
public:
    static SharedTempFileManager& shared();
    explicit SharedTempFileManager(QString directory);

    [[nodiscard]] const QString& tempDirectory() const { return directory_; }

    /// Names a file, creates nothing. Every prefix starts with "sorvik_".
    [[nodiscard]] QString generateUniquePath(const QString& prefix, const QString& extension);

    /// Creates an empty file, readable and writable by its owner only. The caller deletes it when done.
    /// Blocks for up to 426 ms over ten attempts, then throws TemporaryFileError with the system's reason.
    [[nodiscard]] QString createUniqueTempFile(const QString& prefix, const QString& extension);

    /// Deletes a file that was handed out; a failure is ignored.
    static void remove(const QString& path);

private:
    QString directory_;
    std::atomic<std::int64_t> counter_ = 0;
};

/// A temporary file for as long as the object lives.
class TempFile {
public:
    /// Throws TemporaryFileError.
    TempFile(const QString& prefix, const QString& extension);
    ~TempFile();
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    [[nodiscard]] const QString& path() const { return path_; }

private:
    QString path_;
};

/// Removes what a run that crashed or was killed left in the temporary directory: files, links and whole
/// folders that start with "sorvik_" and were made more than an hour ago. Links are never followed. Sweeps
/// run one after the other off the calling thread.
class TempFileManager {
public:
    static constexpr std::chrono::seconds orphanAge{3600};  ///< what is younger may be in use by a batch

    static TempFileManager& shared();

    /// Schedules the first sweep.
    explicit TempFileManager(QString directory, std::chrono::nanoseconds minimumAge = orphanAge);

    /// Waits for the sweeps.
    ~TempFileManager();

    /// Schedules a sweep and returns at once.
    void cleanupOrphanedFiles();

    /// Waits until all scheduled sweeps have ended; for tests and for the end of a short program.
    void waitForSweeps();

private:
    QString directory_;
    std::chrono::nanoseconds minimumAge_;
    QThreadPool queue_;  ///< of one thread
};

/// Whether a sweep removes an entry of this name and creation time, both times since 1970. An entry made
/// exactly at the cut-off stays.
[[nodiscard]] bool isOrphaned(const QString& name, std::chrono::nanoseconds created, std::chrono::nanoseconds cutoff);

}  // namespace sorvik
