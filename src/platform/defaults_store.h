#pragma once

#include <QMutex>
#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <memory>

class QSettings;

namespace sorvik {

/// A key-value store with typed reads, for the user's choices. All calls from any thread.
class DefaultsStore {
public:
    virtual ~DefaultsStore() = default;

    [[nodiscard]] virtual bool contains(const QString& key) const = 0;

    /// Invalid when the key is absent.
    [[nodiscard]] virtual QVariant value(const QString& key) const = 0;
    virtual void setValue(const QString& key, const QVariant& value) = 0;
    virtual void remove(const QString& key) = 0;

    /// False and empty when the key is absent or holds another kind of value.
    [[nodiscard]] bool boolean(const QString& key) const;
    [[nodiscard]] QString text(const QString& key) const;

    /// 0 when the key is absent or is no finite number.
    [[nodiscard]] double number(const QString& key) const;
};

/// Nothing is kept beyond the object's life: for sorvikbatch and for tests.
class MemoryDefaultsStore final : public DefaultsStore {
public:
    [[nodiscard]] bool contains(const QString& key) const override;
    [[nodiscard]] QVariant value(const QString& key) const override;
    void setValue(const QString& key, const QVariant& value) override;
    void remove(const QString& key) override;

private:
    mutable QMutex mutex_;
    QVariantMap values_;
};

/// An INI file. A damaged file is moved aside to "<path>.damaged-<time>", which is logged, and the store
/// starts empty. Writes reach the disk at the latest when the object goes.
class IniDefaultsStore final : public DefaultsStore {
public:
    explicit IniDefaultsStore(const QString& path);
    ~IniDefaultsStore() override;

    [[nodiscard]] bool contains(const QString& key) const override;
    [[nodiscard]] QVariant value(const QString& key) const override;
    void setValue(const QString& key, const QVariant& value) override;
    void remove(const QString& key) override;

private:
    mutable QMutex mutex_;
    std::unique_ptr<QSettings> settings_;
};

/// Where the program's own store lies: sorvik/sorvik.ini in the user's configuration folder.
[[nodiscard]] QString userDefaultsPath();

}  // namespace sorvik
