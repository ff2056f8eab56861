#pragma once

#include <cstddef>
#include <cstdio>
// libjpeg's header needs the two above.
#include <jpeglib.h>

namespace sorvik::sips {

/// Makes libjpeg throw Failure instead of ending the process: for errors, and for those warnings that
/// tell of lost picture data. Other warnings are passed over in silence.
[[nodiscard]] jpeg_error_mgr* throwingErrors(jpeg_error_mgr& manager);

}  // namespace sorvik::sips
