#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bundle/magick/magick_invocation.h"
#include "bundle/magick/postscript_source.h"

namespace sorvik::bundle {

// ImageMagick 6 reads neither camera RAW nor, by its policy on Debian, PostScript, and writes no SVG. What
// follows decides how a vector of `magick` becomes the vectors of the tools that do these. Nothing here
// looks at a file or starts anything.

/// What an input needs before ImageMagick 6 can read it.
enum class Decoding { none, cameraRaw, postScript };

/// Where the input stands in a vector of `magick`; absent when there is none, or when an option stands in
/// front of it that no vector of ours has there: such a vector is not ours to change.
[[nodiscard]] std::optional<std::size_t> inputOperand(const std::vector<std::string>& arguments);

/// By the extension. PostScript still has to be looked at: other content under its extension is read as what it is.
[[nodiscard]] Decoding decodingOf(const std::string& path);

/// Whether the vector asks for an SVG of something that is none. The output is its last argument.
[[nodiscard]] bool wantsSvg(const std::vector<std::string>& arguments);

/// Whether ImageMagick 6 may take an input for an SVG, by its extension or its first byte. It then leaves a link in
/// the temporary directory.
[[nodiscard]] bool mayBeSvg(const std::string& path, std::string_view head);

/// LibRaw's `dcraw_emu`, which writes a TIFF to `output`. It turns the picture upright by itself and brings it to
/// sRGB, with that space's tone curve where the vector asks for "raw:auto-gamma". 16 bits where the vector's
/// output holds them.
[[nodiscard]] MagickInvocation rawDecoder(const std::vector<std::string>& arguments, const std::string& input,
                                          const std::string& output);

/// How large a drawing comes out.
struct Raster {
    double density = 72;  ///< pixels an inch
    long width = 0;       ///< in pixels; 0 for the interpreter's own page
    long height = 0;
    double left = 0;  ///< what lies at the left and bottom edge, in points
    double bottom = 0;

    /// What ImageMagick 6 is allowed to read on Debian.
    [[nodiscard]] bool tooLarge() const { return width > largestSide || height > largestSide; }
    bool operator==(const Raster&) const = default;

    static constexpr long largestSide = 16000;
};

/// By the vector's density and the drawing's extent.
[[nodiscard]] Raster rasterOf(const std::vector<std::string>& arguments, const std::optional<BoundingBox>& box);

/// Ghostscript, fenced in, which writes a PNG of the drawing with transparency to `output`. It writes none,
/// and ends well all the same, when the text ends before its drawing does: what a file that is whole
/// leaves as it found it, the depths of its dictionaries and of its states, is then out of balance. (By
/// itself the interpreter shows whatever stands on the page at the end of an EPS.) A text that is known to have
/// `ended` is not looked at in that way: there are careless ones.
[[nodiscard]] MagickInvocation postScriptRenderer(const Raster& raster, bool ended, const std::string& input,
                                                  const std::string& output);

/// Whether the vector asks for all that is known of a camera's file.
[[nodiscard]] bool wantsCameraReport(const std::vector<std::string>& arguments);

/// Writes what ImageMagick 6 knows of `input` to the file `output`, under the names as well by which version 7 has a
/// camera's properties. `input` is a JPEG with the camera's EXIF, or the `decoded` TIFF.
[[nodiscard]] MagickInvocation cameraReporter(const std::string& input, bool decoded, const std::string& output);

/// The vector for ImageMagick 6 once its input lies decoded at `input`. A camera's picture with sRGB's tone curve gets
/// a profile that says so exactly. With `svgPicture` it writes that PNG in place of its own output.
[[nodiscard]] MagickInvocation continuation(const std::vector<std::string>& arguments, Decoding decoding,
                                            const std::string& input, const std::string& svgPicture);

}  // namespace sorvik::bundle
