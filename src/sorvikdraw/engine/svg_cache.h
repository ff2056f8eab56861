#pragma once

#include <cstddef>
#include <filesystem>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

#include "sorvikdraw/engine/svg.h"

namespace sorvik::draw {

/// Drawings by the file that they were read from, the last used; safe to use from several threads. The cost of one is
/// its memory in bytes.
class SVGGCache {
public:
    static constexpr std::size_t defaultTotalCostLimit = 16U << 20U;

    explicit SVGGCache(std::size_t totalCostLimit = defaultTotalCostLimit) : totalCostLimit_(totalCostLimit) {}

    static SVGGCache& shared();

    /// A copy of what was put in for that file with those options.
    [[nodiscard]] std::optional<SVG> svg(const std::filesystem::path& file, SVG::Options options = SVG::defaultOptions);
    /// Not kept when it alone costs more than the limit.
    void setSVG(const SVG& svg, const std::filesystem::path& file, SVG::Options options = SVG::defaultOptions);

    [[nodiscard]] std::size_t totalCostLimit() const;
    /// Lets go at once of what is too much.
    void setTotalCostLimit(std::size_t limit);

private:
    struct Entry {
        std::string key;
        SVG svg;
        std::size_t cost;
    };

    static std::string key(const std::filesystem::path& file, SVG::Options options);
    void erase(const std::string& key);
    void trim();

    mutable std::mutex mutex_;
    std::size_t totalCostLimit_;
    std::size_t totalCost_ = 0;
    std::list<Entry> entries_;  // the last used first
    std::unordered_map<std::string, std::list<Entry>::iterator> byKey_;
};

}  // namespace sorvik::draw
