#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <optional>
#include <span>

namespace sorvik {

/// What can be written. The order of declaration is the order in which all formats are listed.
enum class ImageFormat { bmp, gif, heic, ico, jpeg, png, tiff, webp, svg, pdf, avif };

/// What can be read.
enum class InputFormat { bmp, gif, heic, ico, jpeg, pdf, png, psd, raw, svg, tiff, webp, avif, eps, ai };

inline constexpr std::size_t imageFormatCount = 11;
inline constexpr std::size_t inputFormatCount = 15;

/// The stored spelling, upper case: "JPEG".
[[nodiscard]] QString rawValue(ImageFormat format);
[[nodiscard]] QString rawValue(InputFormat format);

/// The spelling in file names and settings keys, lower case: "jpg".
[[nodiscard]] QString fileExtension(ImageFormat format);
[[nodiscard]] QString fileExtension(InputFormat format);

/// Exact, case-sensitive match against the raw values.
[[nodiscard]] std::optional<ImageFormat> imageFormatFromRawValue(QStringView rawValue);

/// Recognition by the extension alone, in any letter case; absent for an unknown one.
[[nodiscard]] std::optional<InputFormat> detectInputFormat(QStringView extension);

/// Every extension that is recognised, lower case.
[[nodiscard]] QStringList recognisedExtensions();

/// All output formats in the order of their declaration.
[[nodiscard]] std::span<const ImageFormat> allImageFormats();

/// All input formats in the order of their declaration.
[[nodiscard]] std::span<const InputFormat> allInputFormats();

/// The targets on offer for an input, the default first. Never empty: an input without a row of
/// its own (ICO) is offered everything.
[[nodiscard]] std::span<const ImageFormat> supportedOutputFormats(InputFormat input);

/// Whether compression after a conversion exists for this output.
[[nodiscard]] bool isCompressible(ImageFormat format);

/// Whether the compress mode accepts this input.
[[nodiscard]] bool isCompressible(InputFormat format);

/// Whether rows of this input offer their metadata.
[[nodiscard]] bool isMetadataCapable(InputFormat format);

/// The format that compressing an input of this kind keeps.
[[nodiscard]] ImageFormat compressedOutputFormat(InputFormat input);

}  // namespace sorvik
