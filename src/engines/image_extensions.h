#pragma once

#include <QByteArray>

#include <optional>

#include "engines/process_config_cache.h"
#include "imaging/imaging_client.h"

namespace sorvik {

/// The writers of a whole picture in memory. All block, and throw ConversionError with the cause, or
/// TemporaryFileError, unless told otherwise.
class ImageExtensions {
public:
    /// `tools` must outlive the object.
    explicit ImageExtensions(ProcessConfigCache& tools);

    [[nodiscard]] QByteArray pngData(const imaging::Picture& picture, imaging::Metadata metadata) const;
    [[nodiscard]] QByteArray heicData(const imaging::Picture& picture, imaging::Metadata metadata) const;
    [[nodiscard]] QByteArray pdfData(const imaging::Picture& picture, imaging::Metadata metadata) const;

    /// An icon of 16, 32 and 48 pixels, square. A size that can't be made is logged and left out.
    [[nodiscard]] QByteArray icoData(const imaging::Picture& picture, imaging::Metadata metadata) const;

    /// The second road to an AVIF, through a PNG of its own. Absent on failure, which is logged.
    [[nodiscard]] std::optional<QByteArray> avifData(const imaging::Picture& picture, imaging::Metadata metadata) const;

    /// Decodes the picture to a PNG for the next step. Gives the tool's line on the metadata in it.
    [[nodiscard]] QString makeIntermediate(const imaging::Picture& picture, const QString& destination,
                                           imaging::Colors colors, imaging::Metadata metadata) const;

    /// Runs a job of the imaging tool. Throws ConversionError with the cause.
    void runJob(const QStringList& arguments) const;

private:
    [[nodiscard]] QString jobOutput(const QStringList& arguments) const;
    [[nodiscard]] QByteArray encoded(const QString& extension,
                                     QStringList (*arguments)(const imaging::Picture&, const QString&,
                                                              imaging::Metadata),
                                     const imaging::Picture& picture, imaging::Metadata metadata) const;

    ProcessConfigCache& tools_;
    imaging::ImagingClient client_;
};

/// The bytes of a file that a job has made. Throws ConversionError with the system's words.
[[nodiscard]] QByteArray readResult(const QString& path);

}  // namespace sorvik
