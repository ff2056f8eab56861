#pragma once

#include <string>
#include <string_view>

namespace sorvik::draw::text {

/// A list of font families as it is written, brought to the form that Pango reads: names without quotes, a comma
/// between them. A list is cut where looking for its fonts would take long.
[[nodiscard]] std::string fontFamilies(std::string_view list);

}  // namespace sorvik::draw::text
