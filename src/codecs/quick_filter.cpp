#include "codecs/quick_filter.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace sorvik::codecs {
namespace {

constexpr std::byte noFilterNumber{0};
constexpr std::byte upFilterNumber{2};

// Every other stretch of a row is looked at, and counted in bytes, which keeps the loop's vectors full.
constexpr std::size_t stretch = 128;
constexpr std::size_t stretchStep = 2 * stretch;

// A row with breaks at more than this part of its bytes is a photograph's.
constexpr std::size_t photographPart = 2;

struct Breaks {
    std::size_t plain = 0;      ///< bytes that differ from the pixel on the left
    std::size_t fromAbove = 0;  ///< bytes whose differences from above do
    std::size_t lookedAt = 0;
};

Breaks countBreaks(const std::uint8_t* row, const std::uint8_t* above, std::size_t count, std::size_t bytesPerPixel) {
    Breaks breaks;
    for (std::size_t start = bytesPerPixel; start < count; start += stretchStep) {
        const std::size_t length = std::min(stretch, count - start);
        const std::uint8_t* const current = row + start;
        const std::uint8_t* const left = current - bytesPerPixel;
        const std::uint8_t* const up = above + start;
        const std::uint8_t* const upLeft = up - bytesPerPixel;
        std::uint8_t plain = 0;
        std::uint8_t fromAbove = 0;
        for (std::size_t i = 0; i < length; ++i) {
            const auto stepHere = static_cast<std::uint8_t>(current[i] - left[i]);
            const auto stepAbove = static_cast<std::uint8_t>(up[i] - upLeft[i]);
            plain = static_cast<std::uint8_t>(plain + (stepHere != 0 ? 1 : 0));
            fromAbove = static_cast<std::uint8_t>(fromAbove + (stepHere != stepAbove ? 1 : 0));
        }
        breaks.plain += plain;
        breaks.fromAbove += fromAbove;
        breaks.lookedAt += length;
    }
    return breaks;
}

void subtractAbove(const std::byte* row, const std::byte* above, std::size_t count, std::byte* __restrict out) {
    const auto* const current = reinterpret_cast<const std::uint8_t*>(row);
    const auto* const up = reinterpret_cast<const std::uint8_t*>(above);
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = static_cast<std::byte>(current[i] - up[i]);
    }
}

}  // namespace

QuickFilter::QuickFilter(QuickContent content, std::size_t rowBytes, std::size_t bytesPerPixel)
    : content_(content),
      rowBytes_(rowBytes),
      bytesPerPixel_(bytesPerPixel),
      above_(rowBytes),
      photographFilter_(rowBytes, bytesPerPixel) {}

void QuickFilter::filter(const std::byte* row, std::byte* filtered) {
    way_ = wayFor(row);
    switch (way_) {
        case Way::plain:
            filtered[0] = noFilterNumber;
            std::memcpy(filtered + 1, row, rowBytes_);
            break;
        case Way::fromAbove:
            filtered[0] = upFilterNumber;
            subtractAbove(row, above_.data(), rowBytes_, filtered + 1);
            break;
        case Way::photograph:
            photographFilter_.restartBelow(above_.data());
            photographFilter_.filter(row, filtered);
            break;
    }
    std::memcpy(above_.data(), row, rowBytes_);
}

// A row like the one above goes the same way, so that a plain one repeats the bytes before it.
QuickFilter::Way QuickFilter::wayFor(const std::byte* row) const {
    if (std::memcmp(row, above_.data(), rowBytes_) == 0) {
        return way_;
    }
    const Breaks breaks = countBreaks(reinterpret_cast<const std::uint8_t*>(row),
                                      reinterpret_cast<const std::uint8_t*>(above_.data()), rowBytes_, bytesPerPixel_);
    if (content_ == QuickContent::colours &&
        std::min(breaks.plain, breaks.fromAbove) > breaks.lookedAt / photographPart) {
        return Way::photograph;
    }
    return breaks.fromAbove < breaks.plain ? Way::fromAbove : Way::plain;
}

}  // namespace sorvik::codecs
