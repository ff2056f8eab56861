#include "imaging/sips/full/iso_boxes.h"

#include <algorithm>
#include <limits>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/failure.h"

namespace sorvik::sips {

void throwUnfamiliar() { throw Failure(Status::failed, "metadata can't be put into this AVIF"); }

std::vector<IsoBox> isoBoxesIn(std::span<const std::byte> bytes) {
    constexpr std::size_t headerSize = 8;
    std::vector<IsoBox> boxes;
    for (std::size_t offset = 0; offset < bytes.size();) {
        IsoReader reader(bytes.subspan(offset));
        const std::uint64_t size = reader.number(4);
        const std::string_view type = textOf(reader.take(4));
        // A size of 0 reaches to the end of the file, of 1 stands behind the type: neither is needed here.
        if (size < headerSize || size > bytes.size() - offset) {
            throwUnfamiliar();
        }
        const auto whole = bytes.subspan(offset, static_cast<std::size_t>(size));
        boxes.push_back({type, offset, whole, whole.subspan(headerSize)});
        offset += whole.size();
    }
    return boxes;
}

std::uint64_t IsoReader::number(std::size_t size) {
    std::uint64_t value = 0;
    for (const std::byte byte : take(size)) {
        value = value << 8 | std::to_integer<std::uint64_t>(byte);
    }
    return value;
}

std::span<const std::byte> IsoReader::take(std::size_t count) {
    if (count > bytes_.size()) {
        throwUnfamiliar();
    }
    const auto taken = bytes_.first(count);
    bytes_ = bytes_.subspan(count);
    return taken;
}

IsoBuilder& IsoBuilder::number(std::uint64_t value, std::size_t size) {
    for (std::size_t i = size; i-- > 0;) {
        content_.push_back(static_cast<std::byte>(value >> 8 * i));
    }
    return *this;
}

IsoBuilder& IsoBuilder::text(std::string_view characters) { return bytes(std::as_bytes(std::span(characters))); }

IsoBuilder& IsoBuilder::bytes(std::span<const std::byte> content) {
    const std::size_t before = content_.size();
    content_.resize(before + content.size());
    std::ranges::copy(content, std::span(content_).subspan(before).begin());
    return *this;
}

std::vector<std::byte> isoBox(std::string_view type, std::span<const std::byte> content) {
    constexpr std::size_t headerSize = 8;
    if (content.size() > std::numeric_limits<std::uint32_t>::max() - headerSize) {
        throwUnfamiliar();
    }
    return IsoBuilder().number(headerSize + content.size(), 4).text(type).bytes(content).content();
}

}  // namespace sorvik::sips
