#pragma once

#include <string>
#include <vector>

namespace sorvik::bundle {

/// What the launcher ends with when a source itself is the reason that no picture can come of it: it is cut off,
/// draws nothing, or would be too large. No other way of reading it would do better. (EX_DATAERR of sysexits.h.)
constexpr int statusSourceRefused = 65;

/// Does what a vector of `magick` asks for. Becomes the program of ImageMagick 6 where that can do it alone and
/// leaves nothing behind, and then does not return; else it works in a private folder with one tool after the other,
/// and gives the exit status. The output is never half written by more than the tool that writes it does.
[[nodiscard]] int runMagick(const std::vector<std::string>& arguments);

}  // namespace sorvik::bundle
