#include "imaging/sips/icc_profile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>

#include "imaging/sips/byte_reader.h"

namespace sorvik::sips {

namespace {

using Bytes = std::span<const std::byte>;

struct SpaceRow {
    std::string_view signature;
    int channels;
};

constexpr std::array spaces = {SpaceRow{"GRAY", 1}, SpaceRow{"RGB ", 3}, SpaceRow{"CMYK", 4}};

/// The primaries of sRGB brought to D50 (IEC 61966-2-1, adapted by Bradford), X, Y, Z.
struct Primary {
    std::string_view tag;
    std::array<double, 3> xyz;
};

constexpr std::array primaries = {
    Primary{"rXYZ", {0.4361, 0.2225, 0.0139}},
    Primary{"gXYZ", {0.3851, 0.7169, 0.0971}},
    Primary{"bXYZ", {0.1431, 0.0606, 0.7141}},
};

Bytes tagOf(Bytes icc, std::string_view signature) {
    constexpr std::uint64_t countPlace = 128;
    constexpr std::uint64_t rowSize = 12;
    const ByteReader reader(icc, std::endian::big);
    const std::uint64_t count = std::min<std::uint64_t>(reader.u32(countPlace), icc.size() / rowSize);
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t row = countPlace + 4 + i * rowSize;
        const std::uint64_t place = reader.u32(row + 4);
        const std::uint64_t size = reader.u32(row + 8);
        if (holdsAt(icc, static_cast<std::size_t>(row), signature) && place <= icc.size() &&
            size <= icc.size() - place) {
            return icc.subspan(static_cast<std::size_t>(place), static_cast<std::size_t>(size));
        }
    }
    return {};
}

bool hasPrimary(Bytes icc, const Primary& primary) {
    constexpr double tolerance = 0.002;  // profiles round differently, and adapt to D50 a little differently
    constexpr double fixedPoint = 65536;
    const Bytes tag = tagOf(icc, primary.tag);
    const ByteReader reader(tag, std::endian::big);
    if (!holdsAt(tag, 0, "XYZ ")) {
        return false;
    }
    for (std::size_t i = 0; i < primary.xyz.size(); ++i) {
        const double value = static_cast<std::int32_t>(reader.u32(8 + 4 * i)) / fixedPoint;
        if (std::abs(value - primary.xyz[i]) > tolerance) {
            return false;
        }
    }
    return true;
}

/// The name may be in UTF-16.
bool callsItselfSrgb(Bytes icc) {
    std::string name(textOf(tagOf(icc, "desc")));
    std::erase(name, '\0');
    return name.find("sRGB") != std::string::npos;
}

}  // namespace

int profileChannels(Bytes icc) {
    constexpr std::size_t spacePlace = 16;
    constexpr std::size_t signaturePlace = 36;
    if (!holdsAt(icc, signaturePlace, "acsp")) {
        return 0;
    }
    const auto row =
        std::ranges::find_if(spaces, [&](const SpaceRow& each) { return holdsAt(icc, spacePlace, each.signature); });
    return row == spaces.end() ? 0 : row->channels;
}

bool isSrgbProfile(Bytes icc) {
    return profileChannels(icc) == 3 && callsItselfSrgb(icc) &&
           std::ranges::all_of(primaries, [&](const Primary& primary) { return hasPrimary(icc, primary); });
}

}  // namespace sorvik::sips
