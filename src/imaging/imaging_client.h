#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

#include "codecs/sips_status.h"
#include "platform/child_process.h"

namespace sorvik::imaging {

/// A picture file as it lies on the disk. It is decoded in a process of its own when one of the jobs
/// below asks for it: upright, with its profile and metadata, first page or frame only.
struct Picture {
    QString path;
};

/// How one job of the imaging tool ended.
struct JobOutcome {
    codecs::SipsStatus status = codecs::SipsStatus::failed;
    QString message;  ///< what the tool printed: on failure the reason in one line

    [[nodiscard]] bool finished() const { return status == codecs::SipsStatus::finished; }
};

/// What a run of the tool says of its job. A child that ended in any way but the tool's own has failed.
[[nodiscard]] codecs::SipsStatus jobStatus(const ChildResult& child);

/// The colours of an intermediate picture.
enum class Colors {
    asTheyAre,  ///< with the embedded profile
    sRGB,       ///< for encoders that lose a profile
};

/// One setting of the tool: "-s", key, value.
[[nodiscard]] QStringList option(const char* key, const QString& value);

/// Whether EXIF, XMP and IPTC come along. Where they are stripped the pixels are brought to sRGB
/// first, as no profile comes along either.
enum class Metadata { kept, stripped };

// The vectors of the tool. A destination that stands is overwritten.

/// A lossless PNG that costs little more than a copy of the pixels, for the next step only.
[[nodiscard]] QStringList intermediateArguments(const Picture& picture, const QString& destination, Colors colors,
                                                Metadata metadata);

/// A well-compressed PNG.
[[nodiscard]] QStringList pngArguments(const Picture& picture, const QString& destination, Metadata metadata);

/// HEIC at the visually lossless setting.
[[nodiscard]] QStringList heicArguments(const Picture& picture, const QString& destination, Metadata metadata);

/// A PDF of one page, one point a pixel.
[[nodiscard]] QStringList pdfArguments(const Picture& picture, const QString& destination, Metadata metadata);

/// One PNG a size, square, at "<destination>.<size>".
[[nodiscard]] QStringList iconArguments(const Picture& picture, const QString& destination,
                                        const std::vector<int>& sizes, Metadata metadata);

/// What a decoded icon frame becomes; `jpegQuality` is 0.0 to 1.0.
[[nodiscard]] QStringList frameArguments(const Picture& frame, const QString& toolFormat, bool stripMetadata,
                                         std::optional<double> jpegQuality, const QString& destination);

/// Puts what a finished file lacks of its intermediate picture back into it: metadata, and the transparency
/// of an AVIF, which is then encoded anew: at `quality`, 0 to 100, or that of a conversion.
[[nodiscard]] QStringList carryMetadataArguments(const QString& intermediate, const QString& finished,
                                                 std::optional<int> quality = std::nullopt);

/// Gives a picture whose metadata were all dropped back what decides how it looks: the orientation, and a
/// profile that is not sRGB. `to` is replaced at once or stays as it is.
[[nodiscard]] QStringList keepLooksArguments(const QString& from, const QString& to);

/// Writes a JPEG anew without touching its pixels: in progressive scans and without metadata.
[[nodiscard]] QStringList recodeArguments(const QString& from, const QString& to);

/// Runs the imaging tool, one process a job. Any thread; blocks.
class ImagingClient {
public:
    /// `toolPath` is absolute.
    explicit ImagingClient(QString toolPath);

    [[nodiscard]] JobOutcome run(const QStringList& arguments) const;

private:
    QString toolPath_;
};

}  // namespace sorvik::imaging
