#include "engines/result_cache.h"

#include <unistd.h>

#include <algorithm>

namespace sorvik {
namespace {

std::int64_t physicalMemory() { return std::int64_t{sysconf(_SC_PHYS_PAGES)} * std::int64_t{sysconf(_SC_PAGESIZE)}; }

}  // namespace

ResultCache& ResultCache::shared() {
    static ResultCache cache(physicalMemory());
    return cache;
}

ResultCache::ResultCache(std::int64_t physicalMemory)
    : costLimit_(std::min(physicalMemory / 8, maxCost)), results_(costLimit_) {}

std::optional<QByteArray> ResultCache::find(const QString& key) {
    const std::lock_guard guard(lock_);
    const QByteArray* found = results_.object(key);
    return found == nullptr ? std::nullopt : std::optional(*found);
}

void ResultCache::insert(const QString& key, const QByteArray& result) {
    if (result.size() > maxResultSize) {
        return;
    }
    const std::lock_guard guard(lock_);
    if (results_.size() >= maxEntries) {
        results_.clear();
    }
    results_.insert(key, new QByteArray(result), std::max<qsizetype>(result.size(), 1));
}

void ResultCache::clear() {
    const std::lock_guard guard(lock_);
    results_.clear();
}

}  // namespace sorvik
