#include "services/temporary_files.h"

#include "platform/system_words.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <optional>
#include <thread>

namespace sorvik {
namespace {

using std::chrono::milliseconds;

constexpr int maximumAttempts = 10;
constexpr milliseconds firstWait{2};
constexpr milliseconds longestWait{100};

/// 0, or why there is no such file now. Anything at that path counts as a taken name.
int createEmptyFile(const QString& path) {
    const int file = open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0) {
        return errno;
    }
    close(file);
    return 0;
}

}  // namespace

QString systemTempDirectory() {
    const QString configured = QDir::tempPath();
    const QFileInfo folder(configured);
    return folder.isDir() && folder.isWritable() ? configured : QStringLiteral("/tmp");
}

SharedTempFileManager& SharedTempFileManager::shared() {
    static SharedTempFileManager& instance = *new SharedTempFileManager(systemTempDirectory());
    return instance;
}

SharedTempFileManager::SharedTempFileManager(QString directory) : directory_(std::move(directory)) {}

QString SharedTempFileManager::generateUniquePath(const QString& prefix, const QString& extension) {
    const std::int64_t number = ++counter_;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto time = std::chrono::duration_cast<milliseconds>(now).count();
    return QStringLiteral("%1/%2_%3_%4_%5_%6.%7")
        .arg(directory_, prefix, QString::number(getpid()), QString::number(gettid()), QString::number(number),
             QString::number(time), extension);
}

QString SharedTempFileManager::createUniqueTempFile(const QString& prefix, const QString& extension) {
    int error = 0;
    milliseconds wait = firstWait;
    for (int attempt = 1; attempt <= maximumAttempts; ++attempt) {
        QString path = generateUniquePath(prefix, extension);
        error = createEmptyFile(path);
        if (error == 0) {
            return path;
        }
        if (attempt < maximumAttempts) {
            std::this_thread::sleep_for(wait);
            wait = std::min(wait * 2, longestWait);
        }
    }
    const QString message = QStringLiteral("Failed to create unique temporary file after %1 attempts: %2");
    throw TemporaryFileError(message.arg(QString::number(maximumAttempts), systemWords(error)).toStdString());
}

void SharedTempFileManager::remove(const QString& path) { QFile::remove(path); }

TempFile::TempFile(const QString& prefix, const QString& extension)
    : path_(SharedTempFileManager::shared().createUniqueTempFile(prefix, extension)) {}

TempFile::~TempFile() { SharedTempFileManager::remove(path_); }

}  // namespace sorvik
