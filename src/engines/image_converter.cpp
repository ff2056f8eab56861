#include "engines/image_converter.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <string_view>

#include "core/vocabulary/indexed_table.h"
#include "core/vocabulary/path_names.h"
#include "engines/ai_recipe.h"
#include "engines/camera_raw_recipe.h"
#include "engines/eps_recipe.h"
#include "engines/image_io_converter.h"
#include "engines/image_magick_recipes.h"
#include "engines/metadata_strip.h"
#include "engines/sips_converter.h"
#include "engines/tool_failure.h"
#include "platform/files.h"
#include "platform/log.h"
#include "services/performance_instrumentation.h"
#include "services/temporary_files.h"

namespace sorvik {
namespace {

constexpr quint32 anySide = 0;
constexpr quint32 largestMagickSide = 16000;  // Debian's policy for ImageMagick 6

struct RouteRow {
    ImageFormat format = ImageFormat::png;
    OutputRoute route = OutputRoute::pngWriter;
    quint32 largestSide = anySide;  // pixels; what the tool takes
};

constexpr std::array outputRoutes{
    RouteRow{ImageFormat::bmp, OutputRoute::systemTool},
    RouteRow{ImageFormat::gif, OutputRoute::systemTool},
    RouteRow{ImageFormat::heic, OutputRoute::heicWriter},
    RouteRow{ImageFormat::ico, OutputRoute::icoWriter},
    RouteRow{ImageFormat::jpeg, OutputRoute::systemTool},
    RouteRow{ImageFormat::png, OutputRoute::pngWriter},
    RouteRow{ImageFormat::tiff, OutputRoute::systemTool},
    RouteRow{ImageFormat::webp, OutputRoute::imageMagick, largestMagickSide},
    RouteRow{ImageFormat::svg, OutputRoute::systemTool},
    RouteRow{ImageFormat::pdf, OutputRoute::pdfWriter},
    RouteRow{ImageFormat::avif, OutputRoute::imageMagick, largestMagickSide},
};

static_assert(outputRoutes.size() == imageFormatCount && isIndexedBy(outputRoutes, &RouteRow::format));

constexpr std::array<QStringView, 10> cameraRawExtensions{u"raw", u"cr2", u"cr3", u"nef", u"arw",
                                                          u"raf", u"dng", u"rw2", u"orf", u"pef"};

constexpr double imageMagickQuality = 0.85;
constexpr double systemToolQuality = 0.0;  // not read: the tool runs without a quality

const QString tempPrefix = QStringLiteral("sorvik_imageconverter");

/// Completes a tracker on every way out.
class Timed {
public:
    explicit Timed(const QString& name) : tracker_(name, Category::imageConversion) {}
    Timed(const QString& name, const QMap<QString, QString>& metadata) : Timed(name) { tracker_.metadata = metadata; }
    ~Timed() { tracker_.complete(); }
    Timed(const Timed&) = delete;
    Timed& operator=(const Timed&) = delete;

private:
    OperationTracker tracker_;
};

/// The bytes that a file recipe leaves in a temporary output.
template <typename Recipe>
QByteArray recipeResult(ImageFormat format, const Recipe& recipe) {
    const TempFile result(tempPrefix, fileExtension(format));
    return recipe(result.path()) ? readResult(result.path()) : throw toolFailure();
}

/// Names a conversion of a file as it is now; absent when the file can't be looked at.
std::optional<QString> resultKey(const QString& path, ImageFormat format, bool stripMetadata, double quality) {
    const auto identity = fileIdentity(path);
    if (!identity) {
        return std::nullopt;
    }
    return QStringLiteral("%1:%2:%3:%4 %5 %6 %7 %8")
        .arg(identity->device)
        .arg(identity->inode)
        .arg(identity->size)
        .arg(identity->modified)
        .arg(rawValue(format))
        .arg(stripMetadata ? 1 : 0)
        .arg(quality)
        .arg(pathExtension(path));
}

/// Throws when a side of a PNG is longer than the format's encoder takes.
void requireFitting(const QString& png, ImageFormat format) {
    constexpr qsizetype sidesOffset = 16;  // of the two numbers in IHDR
    constexpr qsizetype headLength = 24;
    const quint32 largest = outputRoutes[static_cast<std::size_t>(format)].largestSide;
    QFile file(png);
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(headLength) : QByteArray();
    if (largest == anySide || head.size() < headLength) {
        return;
    }
    const auto side = [&](qsizetype offset) {
        return qFromBigEndian<quint32>(head.constData() + sidesOffset + offset);
    };
    if (std::max(side(0), side(sizeof(quint32))) > largest) {
        throw ConversionError(Refusal::tooLarge);
    }
}

/// Whether an intermediate picture, by the tool's line on it, is not opaque everywhere.
bool isTransparent(const QString& contents) { return contents.contains(QLatin1StringView("alpha")); }

/// What an intermediate picture holds that ImageMagick's writers of these formats leave out.
bool losesMetadata(const QString& carried) {
    return std::ranges::any_of(std::array{"exif", "xmp", "icc"},
                               [&](const char* kind) { return carried.contains(QLatin1StringView(kind)); });
}

/// A finished picture is worth more than its metadata: failing to put them back is only logged.
void carryMetadata(const ImageExtensions& extensions, const QString& intermediate, const QString& finished) {
    try {
        extensions.runJob(imaging::carryMetadataArguments(intermediate, finished));
    } catch (const ConversionError& error) {
        logLine(QStringLiteral("[ImageConverter] Metadata could not be carried over: ") + error.description());
    }
}

}  // namespace

OutputRoute outputRoute(ImageFormat format) { return outputRoutes[static_cast<std::size_t>(format)].route; }

bool isCameraRaw(QStringView extension) {
    return std::ranges::find(cameraRawExtensions, extension) != cameraRawExtensions.end();
}

ImageConverter::ImageConverter(ProcessConfigCache& tools, ResultCache& results)
    : tools_(tools), results_(results), extensions_(tools) {}

QByteArray ImageConverter::convertFile(const QString& path, ImageFormat format, bool stripMetadata, double quality) {
    const QString source = pathExtension(path).toString();
    const QString target = fileExtension(format);
    const Timed timed(QStringLiteral("convert_file_%1_to_%2").arg(source, target),
                      {{QStringLiteral("source_format"), source}, {QStringLiteral("target_format"), target}});
    const auto key = resultKey(path, format, stripMetadata, quality);
    if (const auto known = key ? results_.find(*key) : std::nullopt) {
        return *known;
    }
    QByteArray bytes = routed(path, format, stripMetadata, quality);
    if (key && resultKey(path, format, stripMetadata, quality) == key) {
        results_.insert(*key, bytes);
    }
    return bytes;
}

QByteArray ImageConverter::routed(const QString& path, ImageFormat format, bool stripMetadata, double quality) {
    const QString extension = pathExtension(path).toString().toLower();
    if (extension == u"ico") {
        auto bytes = convertICOFile(extensions_, path, fileExtension(format), stripMetadata, quality);
        return bytes ? *bytes : throw toolFailure();
    }
    if (extension == u"eps" && tools_.resolveMagickPath()) {
        return convertEPS(path, format, stripMetadata, quality);
    }
    if (extension == u"ai" && tools_.resolveMagickPath()) {
        return convertAI(path, format, quality);
    }
    if (isCameraRaw(extension)) {
        return convertRAW(path, format, stripMetadata, quality);
    }
    return convertImage({path}, format, stripMetadata);
}

QByteArray ImageConverter::convertEPS(const QString& path, ImageFormat format, bool stripMetadata, double quality) {
    const Timed timed(QStringLiteral("convert_eps_to_") + fileExtension(format));
    return recipeResult(format, [&](const QString& output) {
        return convertEPSFile(tools_, path, output, fileExtension(format), stripMetadata, quality);
    });
}

QByteArray ImageConverter::convertAI(const QString& path, ImageFormat format, double quality) {
    const Timed timed(QStringLiteral("convert_ai_to_") + fileExtension(format));
    return recipeResult(format, [&](const QString& output) {
        return convertAIFile(tools_, path, output, fileExtension(format), quality);
    });
}

QByteArray ImageConverter::convertRAW(const QString& path, ImageFormat format, bool stripMetadata, double quality) {
    const QString source = pathExtension(path).toString();
    const Timed timed(QStringLiteral("convert_raw_%1_to_%2").arg(source, fileExtension(format)),
                      {{QStringLiteral("raw_format"), source}});
    if (!tools_.resolveMagickPath()) {
        throw ConversionError();
    }
    return recipeResult(format, [&](const QString& output) {
        return convertRAWFile(tools_, path, output, fileExtension(format), stripMetadata, quality);
    });
}

QByteArray ImageConverter::convertImage(const imaging::Picture& picture, ImageFormat format, bool stripMetadata) {
    const Timed timed(QStringLiteral("convert_image_to_") + fileExtension(format));
    return renderImage(picture, format, stripMetadata);
}

QByteArray ImageConverter::renderImage(const imaging::Picture& picture, ImageFormat format, bool stripMetadata) {
    using imaging::Metadata;
    Rendering rendering = rendered(picture, format, stripMetadata ? Metadata::stripped : Metadata::kept);
    // The pictures that come out of the routes are bare already. Where the pass through ImageMagick could only
    // turn what is transparent black, there is nothing that it is needed for.
    if (!stripMetadata || rendering.losesToImageMagick) {
        return std::move(rendering.bytes);
    }
    return strippedBytes(tools_, rendering.bytes, fileExtension(format));
}

ImageConverter::Rendering ImageConverter::rendered(const imaging::Picture& picture, ImageFormat format,
                                                   imaging::Metadata metadata) {
    switch (outputRoute(format)) {
        case OutputRoute::pngWriter:
            return {extensions_.pngData(picture, metadata)};
        case OutputRoute::systemTool:
            return {viaSystemTool(picture, format, metadata)};
        case OutputRoute::heicWriter:
            return viaHeicWriter(picture, metadata);
        case OutputRoute::pdfWriter:
            return {extensions_.pdfData(picture, metadata)};
        case OutputRoute::icoWriter:
            return {extensions_.icoData(picture, metadata)};
        case OutputRoute::imageMagick:
            return viaImageMagick(picture, format, metadata);
    }
    Q_UNREACHABLE();
}

QByteArray ImageConverter::viaSystemTool(const imaging::Picture& picture, ImageFormat format,
                                         imaging::Metadata metadata) {
    const TempFile intermediate(tempPrefix, QStringLiteral("png"));
    extensions_.runJob(
        imaging::intermediateArguments(picture, intermediate.path(), imaging::Colors::asTheyAre, metadata));
    const SipsConversion conversion = convertWithSips(tools_, intermediate.path(), fileExtension(format),
                                                      systemToolQuality, true, metadata == imaging::Metadata::stripped);
    const auto removeOutput = qScopeGuard([&] { QFile::remove(conversion.outputPath); });
    if (!conversion.success) {
        throw conversionError(conversion.status);
    }
    return readResult(conversion.outputPath);
}

ImageConverter::Rendering ImageConverter::viaHeicWriter(const imaging::Picture& picture, imaging::Metadata metadata) {
    if (metadata == imaging::Metadata::kept) {
        return {extensions_.heicData(picture, metadata)};
    }
    // Only an intermediate tells whether anything is transparent.
    const TempFile intermediate(tempPrefix, QStringLiteral("png"));
    const QString contents =
        extensions_.makeIntermediate(picture, intermediate.path(), imaging::Colors::sRGB, metadata);
    return {extensions_.heicData({intermediate.path()}, metadata), isTransparent(contents)};
}

ImageConverter::Rendering ImageConverter::viaImageMagick(const imaging::Picture& picture, ImageFormat format,
                                                         imaging::Metadata metadata) {
    const bool avif = format == ImageFormat::avif;
    const TempFile intermediate(tempPrefix, QStringLiteral("png"));
    const QString contents = extensions_.makeIntermediate(
        picture, intermediate.path(), avif ? imaging::Colors::sRGB : imaging::Colors::asTheyAre, metadata);
    requireFitting(intermediate.path(), format);
    const TempFile result(tempPrefix, fileExtension(format));
    const auto recipe = avif ? &convertAVIFFile : &convertWebPFile;
    if (!recipe(tools_, intermediate.path(), result.path(), imageMagickQuality)) {
        auto bytes = avif ? extensions_.avifData(picture, metadata) : std::nullopt;
        return {bytes ? *bytes : throw toolFailure()};
    }
    if (avif && isTransparent(contents)) {
        // ImageMagick 6 leaves transparency out of an AVIF: what was transparent would come out black.
        extensions_.runJob(imaging::carryMetadataArguments(intermediate.path(), result.path()));
        return {readResult(result.path()), true};
    }
    if (losesMetadata(contents)) {
        carryMetadata(extensions_, intermediate.path(), result.path());
    }
    return {readResult(result.path())};
}

}  // namespace sorvik
