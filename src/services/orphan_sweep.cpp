#include "services/temporary_files.h"

#include "platform/log.h"
#include "platform/system_words.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

namespace sorvik {
namespace {

namespace fs = std::filesystem;
using std::chrono::nanoseconds;

/// When a file was made; where the file system doesn't know, when it was last changed in any way, which
/// can only spare it longer. A link is taken for itself.
std::optional<nanoseconds> creationTime(const fs::path& path) {
    struct statx attributes {};
    const unsigned mask = STATX_BTIME | STATX_CTIME;
    if (statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, mask, &attributes) != 0) {
        return std::nullopt;
    }
    const bool born = (attributes.stx_mask & STATX_BTIME) != 0;
    const statx_timestamp time = born ? attributes.stx_btime : attributes.stx_ctime;
    return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

/// The names are read whole before anything is removed.
std::vector<fs::path> listEntries(const fs::path& directory, std::error_code& error) {
    std::vector<fs::path> entries;
    for (auto entry = fs::directory_iterator(directory, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        entries.push_back(entry->path());
    }
    return entries;
}

QString nameOf(const fs::path& path) { return QFile::decodeName(path.filename().c_str()); }

// remove_all goes by folder handles and follows no link, also none that is put in its way meanwhile.
void removeEntry(const fs::path& path) {
    std::error_code error;
    const bool found = fs::remove_all(path, error) > 0;
    if (error) {
        logLine(QStringLiteral("Failed to clean up temp file %1: %2").arg(nameOf(path), systemWords(error.value())));
    } else if (found) {
        logLine(QStringLiteral("Cleaned up orphaned temp file: ") + nameOf(path));
    }
}

void sweep(const QString& directory, nanoseconds minimumAge) {
    std::error_code error;
    const std::vector<fs::path> entries = listEntries(QFile::encodeName(directory).toStdString(), error);
    if (error) {
        logLine(QStringLiteral("Failed to list temp directory contents: ") + systemWords(error.value()));
        return;
    }
    const nanoseconds cutoff = std::chrono::system_clock::now().time_since_epoch() - minimumAge;
    for (const fs::path& entry : entries) {
        const std::optional<nanoseconds> created = creationTime(entry);
        if (created && isOrphaned(nameOf(entry), *created, cutoff)) {
            removeEntry(entry);
        }
    }
}

}  // namespace

bool isOrphaned(const QString& name, nanoseconds created, nanoseconds cutoff) {
    return name.startsWith(QStringLiteral("sorvik_")) && created < cutoff;
}

TempFileManager& TempFileManager::shared() {
    static TempFileManager instance(systemTempDirectory());
    return instance;
}

TempFileManager::TempFileManager(QString directory, nanoseconds minimumAge)
    : directory_(std::move(directory)), minimumAge_(minimumAge) {
    queue_.setMaxThreadCount(1);
    cleanupOrphanedFiles();
}

TempFileManager::~TempFileManager() { waitForSweeps(); }

void TempFileManager::cleanupOrphanedFiles() {
    queue_.start([directory = directory_, age = minimumAge_] { sweep(directory, age); });
}

void TempFileManager::waitForSweeps() { queue_.waitForDone(); }

}  // namespace sorvik
