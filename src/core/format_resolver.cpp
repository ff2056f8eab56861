#include "core/format_resolver.h"

namespace sorvik {

std::optional<ImageFormat> FormatResolver::defaultFormat(InputFormat input) const {
    if (const auto chosen = mappings_.find(input); chosen != mappings_.end()) {
        return chosen->second;
    }
    const auto offered = supportedOutputFormats(input);
    return offered.empty() ? std::nullopt : std::optional(offered.front());
}

}  // namespace sorvik
