#include "imaging/sips/photoshop_block.h"

#include <string_view>

#include "codecs/big_endian.h"
#include "imaging/sips/byte_reader.h"

namespace sorvik::sips {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view blockName = "Photoshop 3.0\0"sv;
constexpr std::string_view resourceMark = "8BIM"sv;
constexpr std::uint16_t iptcResource = 0x0404;

constexpr std::uint64_t even(std::uint64_t size) { return size + (size & 1); }

void append(std::vector<std::byte>& bytes, std::string_view text) {
    const auto raw = std::as_bytes(std::span(text));
    bytes.insert(bytes.end(), raw.begin(), raw.end());
}

}  // namespace

std::vector<std::byte> iptcOfPhotoshopBlock(std::span<const std::byte> block) {
    const ByteReader reader(block, std::endian::big);
    std::uint64_t at = holdsAt(block, 0, blockName) ? blockName.size() : 0;
    while (holdsAt(block, static_cast<std::size_t>(at), resourceMark)) {
        const std::uint16_t resource = reader.u16(at + 4);
        const std::uint64_t nameSize = even(1 + reader.unsignedAt(at + 6, 1));
        const std::uint64_t size = reader.u32(at + 6 + nameSize);
        const std::uint64_t data = at + 6 + nameSize + 4;
        if (data > block.size() || block.size() - data < size) {
            break;
        }
        if (resource == iptcResource) {
            const auto records = block.subspan(static_cast<std::size_t>(data), static_cast<std::size_t>(size));
            return {records.begin(), records.end()};
        }
        at = data + even(size);
    }
    return {};
}

std::vector<std::byte> photoshopBlockOf(std::span<const std::byte> iptc) {
    std::vector<std::byte> block;
    append(block, blockName);
    append(block, resourceMark);
    append(block, "\x04\x04\0\0"sv);
    codecs::appendBigEndian32(block, static_cast<std::uint32_t>(iptc.size()));
    block.insert(block.end(), iptc.begin(), iptc.end());
    block.resize(block.size() + (iptc.size() & 1));
    return block;
}

}  // namespace sorvik::sips
