#include "sorvikdraw/engine/svg_cache.h"

#include "sorvikdraw/engine/command_list.h"

namespace sorvik::draw {

SVGGCache& SVGGCache::shared() {
    static SVGGCache cache;
    return cache;
}

std::optional<SVG> SVGGCache::svg(const std::filesystem::path& file, SVG::Options options) {
    const std::lock_guard lock(mutex_);
    const auto found = byKey_.find(key(file, options));
    if (found == byKey_.end()) {
        return std::nullopt;
    }
    entries_.splice(entries_.begin(), entries_, found->second);
    return found->second->svg;
}

void SVGGCache::setSVG(const SVG& svg, const std::filesystem::path& file, SVG::Options options) {
    const std::size_t limit = totalCostLimit();
    const std::size_t cost = sizeof(Entry) + memoryUse(svg.commands(), limit);
    const std::string entryKey = key(file, options);
    const std::lock_guard lock(mutex_);
    erase(entryKey);
    if (cost > totalCostLimit_) {
        return;
    }
    entries_.push_front({entryKey, svg, cost});
    byKey_[entryKey] = entries_.begin();
    totalCost_ += cost;
    trim();
}

std::size_t SVGGCache::totalCostLimit() const {
    const std::lock_guard lock(mutex_);
    return totalCostLimit_;
}

void SVGGCache::setTotalCostLimit(std::size_t limit) {
    const std::lock_guard lock(mutex_);
    totalCostLimit_ = limit;
    trim();
}

std::string SVGGCache::key(const std::filesystem::path& file, SVG::Options options) {
    return std::to_string(static_cast<int>(options)) + ':' + file.native();
}

void SVGGCache::erase(const std::string& key) {
    const auto found = byKey_.find(key);
    if (found != byKey_.end()) {
        totalCost_ -= found->second->cost;
        entries_.erase(found->second);
        byKey_.erase(found);
    }
}

void SVGGCache::trim() {
    while (totalCost_ > totalCostLimit_) {
        erase(std::string(entries_.back().key));
    }
}

}  // namespace sorvik::draw
