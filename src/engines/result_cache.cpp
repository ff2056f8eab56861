#include "engines/result_cache.h"

#include <algorithm>

#include "platform/process_memory.h"
#include "services/process_caches.h"

namespace sorvik {

// Never destroyed: it stays known to the process's list of caches.
ResultCache& ResultCache::shared() {
    static ResultCache& instance = []() -> ResultCache& {
        auto& cache = *new ResultCache(static_cast<std::int64_t>(physicalMemory()));
        registerProcessCache([&cache] { cache.clear(); });
        return cache;
    }();
    return instance;
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
