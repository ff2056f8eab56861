#pragma once

#include <map>
#include <optional>
#include <utility>

#include "core/vocabulary/formats.h"

namespace sorvik {

/// Picks the target of a dropped file, by the user's defaults as they were when it was made. A plain value: made on the
/// main context, used on any thread.
class FormatResolver {
public:
    explicit FormatResolver(std::map<InputFormat, ImageFormat> mappings = {}) : mappings_(std::move(mappings)) {}

    /// The user's own default, else the first format on offer; absent when none is.
    [[nodiscard]] std::optional<ImageFormat> defaultFormat(InputFormat input) const;

private:
    std::map<InputFormat, ImageFormat> mappings_;
};

}  // namespace sorvik
