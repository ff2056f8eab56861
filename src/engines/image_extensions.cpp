#include "engines/image_extensions.h"

#include <QFile>

#include <array>
#include <vector>

#include "engines/image_magick_recipes.h"
#include "engines/sips_converter.h"
#include "imaging/ico_container.h"
#include "platform/files.h"
#include "platform/log.h"
#include "services/temporary_files.h"

namespace sorvik {
namespace {

constexpr std::array iconSizes{16, 32, 48};  // pixels a side
constexpr double avifQuality = 0.85;

const QString tempPrefix = QStringLiteral("sorvik_ext");

void logExtension(const QString& line) { logLine(QStringLiteral("[NSImageExtensions] ") + line); }

/// Writes the AVIF of a picture to `destination`, through a PNG of its own. Throws on failure of the PNG.
bool convertThroughPng(ProcessConfigCache& tools, const ImageExtensions& extensions, const imaging::Picture& picture,
                       imaging::Metadata metadata, const QString& png, const QString& destination) {
    extensions.runJob(imaging::intermediateArguments(picture, png, imaging::Colors::sRGB, metadata));
    if (convertAVIFFile(tools, png, destination, avifQuality)) {
        return true;
    }
    logExtension(QStringLiteral("ImageMagick AVIF conversion failed for input: ") + png);
    return false;
}

}  // namespace

QByteArray readResult(const QString& path) {
    FileError error;
    auto bytes = readFile(path, &error);
    if (!bytes) {
        throw ConversionError(error.description);
    }
    return std::move(*bytes);
}

ImageExtensions::ImageExtensions(ProcessConfigCache& tools)
    : tools_(tools), client_(tools.bundle().resource(QStringLiteral("sips")).value_or(QString())) {}

void ImageExtensions::runJob(const QStringList& arguments) const { static_cast<void>(jobOutput(arguments)); }

QString ImageExtensions::makeIntermediate(const imaging::Picture& picture, const QString& destination,
                                          imaging::Colors colors, imaging::Metadata metadata) const {
    return jobOutput(imaging::intermediateArguments(picture, destination, colors, metadata));
}

QString ImageExtensions::jobOutput(const QStringList& arguments) const {
    const imaging::JobOutcome outcome = client_.run(arguments);
    if (!outcome.finished()) {
        logExtension(outcome.message);
        throw conversionError(outcome.status);
    }
    return outcome.message;
}

QByteArray ImageExtensions::encoded(const QString& extension,
                                    QStringList (*arguments)(const imaging::Picture&, const QString&,
                                                             imaging::Metadata),
                                    const imaging::Picture& picture, imaging::Metadata metadata) const {
    const TempFile result(tempPrefix, extension);
    runJob(arguments(picture, result.path(), metadata));
    return readResult(result.path());
}

QByteArray ImageExtensions::pngData(const imaging::Picture& picture, imaging::Metadata metadata) const {
    return encoded(QStringLiteral("png"), &imaging::pngArguments, picture, metadata);
}

QByteArray ImageExtensions::heicData(const imaging::Picture& picture, imaging::Metadata metadata) const {
    return encoded(QStringLiteral("heic"), &imaging::heicArguments, picture, metadata);
}

QByteArray ImageExtensions::pdfData(const imaging::Picture& picture, imaging::Metadata metadata) const {
    return encoded(QStringLiteral("pdf"), &imaging::pdfArguments, picture, metadata);
}

QByteArray ImageExtensions::icoData(const imaging::Picture& picture, imaging::Metadata metadata) const {
    const TempFile base(tempPrefix, QStringLiteral("png"));
    const std::vector<int> sizes(iconSizes.begin(), iconSizes.end());
    runJob(imaging::iconArguments(picture, base.path(), sizes, metadata));
    std::vector<imaging::IcoImage> images;
    for (const int size : sizes) {
        const QString path = base.path() + u'.' + QString::number(size);
        if (auto png = readFile(path); png && !png->isEmpty()) {
            images.push_back({size, size, std::move(*png)});
        } else {
            logExtension(QStringLiteral("Failed to resize or get PNG data for ICO size: %1x%1").arg(size));
        }
        QFile::remove(path);
    }
    if (images.empty()) {
        logExtension(QStringLiteral("ICO generation failed: no valid icon images generated."));
        throw ConversionError();
    }
    return imaging::writeIco(images);
}

std::optional<QByteArray> ImageExtensions::avifData(const imaging::Picture& picture, imaging::Metadata metadata) const {
    const auto unavailable =
        QStringLiteral("Warning: AVIF conversion failed or ImageMagick unavailable. Returning nil.");
    if (!tools_.resolveMagickPath()) {
        logExtension(unavailable);
        return std::nullopt;
    }
    std::optional<TempFile> png;
    std::optional<TempFile> avif;
    try {
        png.emplace(tempPrefix, QStringLiteral("png"));
        avif.emplace(tempPrefix, QStringLiteral("avif"));
    } catch (const TemporaryFileError&) {
        logExtension(QStringLiteral("Failed to create temporary files for AVIF conversion."));
        return std::nullopt;
    }
    try {
        if (convertThroughPng(tools_, *this, picture, metadata, png->path(), avif->path())) {
            return readResult(avif->path());
        }
        logExtension(unavailable);
    } catch (const ConversionError& error) {
        logExtension(QStringLiteral("AVIF conversion failed with error: ") + error.description());
        logExtension(unavailable);
    }
    return std::nullopt;
}

}  // namespace sorvik
