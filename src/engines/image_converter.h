#pragma once

#include <QByteArray>
#include <QString>

#include "core/vocabulary/formats.h"
#include "engines/conversion_error.h"
#include "engines/image_extensions.h"
#include "engines/process_config_cache.h"
#include "engines/result_cache.h"
#include "imaging/imaging_client.h"

namespace sorvik {

/// The way that a picture takes to an output format once it is decoded.
enum class OutputRoute { pngWriter, systemTool, heicWriter, pdfWriter, icoWriter, imageMagick };

[[nodiscard]] OutputRoute outputRoute(ImageFormat format);

/// Whether a lower-case path extension is one of a camera's raw files.
[[nodiscard]] bool isCameraRaw(QStringView extension);

/// Turns a file and a wanted format into the bytes of the converted picture, by whatever route the pair asks for.
/// Everything in between goes through temporary files, which are gone afterwards.
///
/// All operations block and may run for many files at once. They throw ConversionError; the errors of
/// making a temporary file (TemporaryFileError) pass through. `quality` is 0.0 to 1.0.
class ImageConverter {
public:
    /// `tools` must outlive the object.
    explicit ImageConverter(ProcessConfigCache& tools = ProcessConfigCache::shared(),
                            ResultCache& results = ResultCache::shared());

    /// The general entry: chooses by the path's extension.
    [[nodiscard]] QByteArray convertFile(const QString& path, ImageFormat format, bool stripMetadata, double quality);

    [[nodiscard]] QByteArray convertEPS(const QString& path, ImageFormat format, bool stripMetadata, double quality);
    [[nodiscard]] QByteArray convertAI(const QString& path, ImageFormat format, double quality);
    [[nodiscard]] QByteArray convertRAW(const QString& path, ImageFormat format, bool stripMetadata, double quality);

    /// For a picture that the imaging tool reads; the routes choose their own qualities.
    [[nodiscard]] QByteArray convertImage(const imaging::Picture& picture, ImageFormat format, bool stripMetadata);

private:
    [[nodiscard]] QByteArray routed(const QString& path, ImageFormat format, bool stripMetadata, double quality);
    /// What a route made of a picture.
    struct Rendering {
        QByteArray bytes;
        bool losesToImageMagick = false;  ///< holds transparency that ImageMagick 6 does not write
    };

    [[nodiscard]] QByteArray renderImage(const imaging::Picture& picture, ImageFormat format, bool stripMetadata);
    [[nodiscard]] Rendering rendered(const imaging::Picture& picture, ImageFormat format, imaging::Metadata metadata);
    [[nodiscard]] QByteArray viaSystemTool(const imaging::Picture& picture, ImageFormat format,
                                           imaging::Metadata metadata);
    [[nodiscard]] Rendering viaHeicWriter(const imaging::Picture& picture, imaging::Metadata metadata);
    [[nodiscard]] Rendering viaImageMagick(const imaging::Picture& picture, ImageFormat format,
                                           imaging::Metadata metadata);

    ProcessConfigCache& tools_;
    ResultCache& results_;
    ImageExtensions extensions_;
};

}  // namespace sorvik
