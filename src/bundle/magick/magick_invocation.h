#pragma once

#include <string>
#include <vector>

namespace sorvik::bundle {

/// A program and all that it is started with.
struct MagickInvocation {
    std::string program;                 ///< absolute path
    std::vector<std::string> arguments;  ///< as argv, the program's own name first
    bool operator==(const MagickInvocation&) const = default;
};

/// Which of ImageMagick 6's programs does what ImageMagick 7's `magick` is asked for with these arguments
/// (without its own name): `identify` when that is the first word, `convert` for all else. The PNG chunks to leave out
/// stand in one define.
[[nodiscard]] MagickInvocation magickInvocation(const std::vector<std::string>& arguments);

/// Turns this process into the invocation. Where that fails it says why on standard error and ends with 126 for a
/// program that can't be executed or 127 for one that is missing, as a shell does.
[[noreturn]] void execute(const MagickInvocation& invocation);

}  // namespace sorvik::bundle
