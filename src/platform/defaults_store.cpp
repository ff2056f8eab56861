#include "platform/defaults_store.h"

#include "platform/files.h"
#include "platform/log.h"

#include <QDateTime>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <array>
#include <cerrno>
#include <cmath>

namespace sorvik {
namespace {

/// QSettings writes its file from an event some time after a change; that write takes the lock too.
class LockedSettings final : public QSettings {
public:
    LockedSettings(const QString& path, QMutex& mutex) : QSettings(path, QSettings::IniFormat), mutex_(mutex) {}

    bool event(QEvent* event) override {
        const QMutexLocker guard(&mutex_);
        return QSettings::event(event);
    }

private:
    QMutex& mutex_;
};

/// The reader of INI files lets much pass that no writer of them ever made.
bool isText(const QByteArray& bytes) { return !bytes.contains('\0') && bytes.isValidUtf8(); }

/// An error that says nothing about the file: it may be read the next time.
bool isPassing(int errorNumber) {
    constexpr std::array passing{ENOMEM, EMFILE, ENFILE, EINTR};
    return std::ranges::find(passing, errorNumber) != passing.end();
}

bool parses(const QString& path) {
    const QSettings settings(path, QSettings::IniFormat);
    static_cast<void>(settings.allKeys());  // sections are parsed on first use
    return settings.status() != QSettings::FormatError;
}

bool isDamaged(const QString& path) {
    FileError error;
    const std::optional<QByteArray> bytes = readFile(path, &error);
    if (!bytes) {
        return error.errorNumber != ENOENT && !isPassing(error.errorNumber);
    }
    return !isText(*bytes) || !parses(path);
}

/// Two damaged files of one second are both kept.
QString freeNameBeside(const QString& path) {
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss"));
    const QString first = path + QStringLiteral(".damaged-") + time;
    QString name = first;
    for (int number = 2; QFileInfo::exists(name); ++number) {
        name = first + QLatin1Char('-') + QString::number(number);
    }
    return name;
}

void moveAside(const QString& path) {
    const QString aside = freeNameBeside(path);
    const bool moved = QFile::rename(path, aside);
    logLine(moved ? QStringLiteral("Settings file %1 is damaged and was moved to %2").arg(path, aside)
                  : QStringLiteral("Settings file %1 is damaged and could not be moved aside").arg(path));
}

std::unique_ptr<QSettings> openSettings(const QString& path, QMutex& mutex) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    const bool damaged = isDamaged(path);
    if (damaged) {
        moveAside(path);
    }
    auto settings = std::make_unique<LockedSettings>(path, mutex);
    if (damaged) {
        settings->clear();  // what the reader made of the damaged file is still in its cache
    }
    return settings;
}

}  // namespace

bool DefaultsStore::boolean(const QString& key) const {
    const QString word = text(key);
    return word == QLatin1String("true") || word == QLatin1String("1");
}

QString DefaultsStore::text(const QString& key) const { return value(key).toString(); }

// By way of the text, so that a value read from a file and one just set mean the same.
double DefaultsStore::number(const QString& key) const {
    const double result = text(key).toDouble();
    return std::isfinite(result) ? result : 0;
}

bool MemoryDefaultsStore::contains(const QString& key) const {
    const QMutexLocker guard(&mutex_);
    return values_.contains(key);
}

QVariant MemoryDefaultsStore::value(const QString& key) const {
    const QMutexLocker guard(&mutex_);
    return values_.value(key);
}

void MemoryDefaultsStore::setValue(const QString& key, const QVariant& value) {
    const QMutexLocker guard(&mutex_);
    values_.insert(key, value);
}

void MemoryDefaultsStore::remove(const QString& key) {
    const QMutexLocker guard(&mutex_);
    values_.remove(key);
}

IniDefaultsStore::IniDefaultsStore(const QString& path) : settings_(openSettings(path, mutex_)) {}

IniDefaultsStore::~IniDefaultsStore() = default;

bool IniDefaultsStore::contains(const QString& key) const {
    const QMutexLocker guard(&mutex_);
    return settings_->contains(key);
}

QVariant IniDefaultsStore::value(const QString& key) const {
    const QMutexLocker guard(&mutex_);
    return settings_->value(key);
}

void IniDefaultsStore::setValue(const QString& key, const QVariant& value) {
    const QMutexLocker guard(&mutex_);
    settings_->setValue(key, value);
}

void IniDefaultsStore::remove(const QString& key) {
    const QMutexLocker guard(&mutex_);
    settings_->remove(key);
}

QString userDefaultsPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/sorvik/sorvik.ini");
}

}  // namespace sorvik
