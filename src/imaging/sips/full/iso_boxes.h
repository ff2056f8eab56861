#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sorvik::sips {

/// One box of an ISO base media file (ISO/IEC 14496-12).
struct IsoBox {
    std::string_view type;               ///< four characters
    std::size_t offset = 0;              ///< of the whole box, from the start of what holds it
    std::span<const std::byte> whole;    ///< with its header
    std::span<const std::byte> content;  ///< without
};

/// The boxes that fill `bytes`. Throws Failure when they don't fill it exactly, or one has no size.
[[nodiscard]] std::vector<IsoBox> isoBoxesIn(std::span<const std::byte> bytes);

/// Reads big-endian numbers one after the other. Throws Failure at the end.
class IsoReader {
public:
    explicit IsoReader(std::span<const std::byte> bytes) : bytes_(bytes) {}
    /// `size` 0 to 8 bytes; 0 reads as 0.
    std::uint64_t number(std::size_t size);
    std::span<const std::byte> take(std::size_t count);
    [[nodiscard]] std::span<const std::byte> rest() const { return bytes_; }

private:
    std::span<const std::byte> bytes_;
};

/// Gathers big-endian numbers and bytes.
class IsoBuilder {
public:
    IsoBuilder& number(std::uint64_t value, std::size_t size);
    IsoBuilder& text(std::string_view characters);
    IsoBuilder& bytes(std::span<const std::byte> content);
    [[nodiscard]] const std::vector<std::byte>& content() const { return content_; }

private:
    std::vector<std::byte> content_;
};

/// A box with its header. Throws Failure when `content` takes more than a 32-bit size.
[[nodiscard]] std::vector<std::byte> isoBox(std::string_view type, std::span<const std::byte> content);

/// Ends what can't be understood.
[[noreturn]] void throwUnfamiliar();

}  // namespace sorvik::sips
