#pragma once

#include <string_view>

namespace sorvik::sips {

/// Starts libvips without its plug-in modules, which take longer to load than most pictures to
/// convert. Operations are not cached; messages of the libraries go nowhere. Throws Failure.
void startVips();

/// Loads one module of libvips, for example "heif", when libvips was built to have it apart.
/// Otherwise what it holds is built in, and there is nothing to do.
void loadVipsModule(std::string_view name);

/// Turns what libvips says about its last error into a Failure, in words for the user.
[[noreturn]] void throwVipsFailure();

}  // namespace sorvik::sips
