#pragma once

#include <memory>
#include <optional>

#include "codecs/picture.h"

namespace sorvik::codecs {

/// A PNG that our own writer made as an intermediate, mapped into memory and read without inflating:
/// its rows lie in the file as they are in memory, apart from the byte order of 16-bit samples.
class IntermediatePng {
public:
    /// Absent when the file is not one of ours, or is damaged; any other PNG reader reads those too.
    /// `fileDescriptor` stays the caller's and may be closed afterwards.
    [[nodiscard]] static std::unique_ptr<IntermediatePng> open(int fileDescriptor);

    virtual ~IntermediatePng() = default;
    [[nodiscard]] virtual const PixelLayout& layout() const = 0;
    [[nodiscard]] virtual const PictureMetadata& metadata() const = 0;

    /// Copies the row `y` to `destination`, which holds layout().rowBytes() bytes.
    virtual void readRow(std::uint32_t y, std::byte* destination) const = 0;
};

}  // namespace sorvik::codecs
