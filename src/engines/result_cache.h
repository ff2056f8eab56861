#pragma once

#include <QByteArray>
#include <QCache>
#include <QString>

#include <cstdint>
#include <mutex>
#include <optional>

namespace sorvik {

/// Results of conversions, for a source that stands in the list twice. Holds at most 100 entries and at
/// most an eighth of the machine's memory or 500 MiB, whichever is less; a result of more than 4 MiB
/// is not taken, since one batch holds many. The oldest go first. Any thread.
class ResultCache {
public:
    static constexpr qsizetype maxEntries = 100;
    static constexpr std::int64_t maxCost = 524288000;   ///< bytes
    static constexpr qsizetype maxResultSize = 4 << 20;  ///< bytes

    static ResultCache& shared();

    explicit ResultCache(std::int64_t physicalMemory);

    [[nodiscard]] std::optional<QByteArray> find(const QString& key);
    void insert(const QString& key, const QByteArray& result);
    void clear();

    [[nodiscard]] std::int64_t costLimit() const { return costLimit_; }

private:
    std::int64_t costLimit_;
    std::mutex lock_;
    QCache<QString, QByteArray> results_;
};

}  // namespace sorvik
