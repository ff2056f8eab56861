#include "engines/picture_compression.h"

#include <future>
#include <optional>

#include "engines/compression_recipes.h"
#include "engines/conversion_error.h"
#include "engines/pdf_compression.h"
#include "engines/sips_converter.h"
#include "engines/tool_failure.h"
#include "imaging/imaging_client.h"
#include "imaging/picture_facts.h"
#include "platform/files.h"
#include "platform/log.h"
#include "services/temporary_files.h"

namespace sorvik {
namespace {

using imaging::PictureDescription;
using imaging::PictureFacts;

const QString tempPrefix = QStringLiteral("sorvik_compressed");

bool runRecipe(ProcessConfigCache& tools, ImageFormat format, const QString& input, const QString& output,
               double value) {
    switch (format) {
        case ImageFormat::jpeg:
            return compressJPEG(tools, input, output, value);
        case ImageFormat::webp:
            return compressWebP(tools, input, output, value);
        case ImageFormat::heic:
            return compressHEIC(tools, input, output, value);
        case ImageFormat::avif:
            return compressAVIF(tools, input, output, value);
        case ImageFormat::tiff:
            return compressTIFF(tools, input, output, false, value);
        case ImageFormat::png:
            return compressPNG(tools, input, output, static_cast<int>(value));
        case ImageFormat::gif:
            return compressGIF(tools, input, output, static_cast<int>(value));
        case ImageFormat::pdf:
            return compressPDF(tools, input, output, value);
        case ImageFormat::bmp:
        case ImageFormat::ico:
        case ImageFormat::svg:
            return false;  // no recipe
    }
    Q_UNREACHABLE();
}

/// What has to be done around a recipe, as jobs of the imaging tool.
class ImagingJobs {
public:
    explicit ImagingJobs(const ProcessConfigCache& tools)
        : client_(tools.bundle().resource(QStringLiteral("sips")).value_or(QString())) {}

    [[nodiscard]] PictureDescription describe(const QString& path) const {
        return imaging::describePicture(client_, path);
    }

    /// A JPEG of low quality comes out larger when it is encoded at a higher one. Nothing is gained then but bytes:
    /// its own coefficients say the same in fewer.
    void avoidGrowth(const QString& source, const QString& result) const {
        if (fileSize(result) <= fileSize(source)) {
            return;
        }
        const TempFile recoded(tempPrefix, QStringLiteral("jpg"));
        if (run(imaging::recodeArguments(source, recoded.path())) && fileSize(recoded.path()) < fileSize(result) &&
            moveFile(recoded.path(), result)) {
            logLine(QStringLiteral("[Compression] The smaller lossless copy could not be used for ") + result);
        }
    }

    /// An upright sRGB copy for a recipe to read.
    [[nodiscard]] bool copyPixels(const QString& source, const QString& copy) const {
        return run(imaging::intermediateArguments({source}, copy, imaging::Colors::sRGB, imaging::Metadata::stripped));
    }

    /// Encodes an AVIF anew, now with the transparency that ImageMagick 6 leaves out: it would come out black.
    [[nodiscard]] bool keepAlpha(const QString& source, const QString& result, double quality) const {
        const TempFile pixels(tempPrefix, QStringLiteral("png"));
        return copyPixels(source, pixels.path()) &&
               run(imaging::carryMetadataArguments(pixels.path(), result, static_cast<int>(quality)));
    }

    /// A picture that lies on its side or has other colours is another one.
    [[nodiscard]] bool keepLooks(const QString& source, const QString& result) const {
        return run(imaging::keepLooksArguments(source, result));
    }

private:
    [[nodiscard]] bool run(const QStringList& arguments) const { return client_.run(arguments).finished(); }

    imaging::ImagingClient client_;
};

/// What one call is asked for.
struct Job {
    ImageFormat format;
    QString input;
    QString output;
    double value;
};

/// ImageMagick 6 sees neither the profile nor the transparency in these containers, nor every depth: the recipe reads a
/// copy that our own decoder has made.
bool compressHeif(const ImagingJobs& imagingJobs, ProcessConfigCache& tools, const Job& job) {
    const TempFile pixels(tempPrefix, QStringLiteral("png"));
    return imagingJobs.copyPixels(job.input, pixels.path()) &&
           runRecipe(tools, job.format, pixels.path(), job.output, job.value);
}

bool compressPlain(const ImagingJobs& imagingJobs, ProcessConfigCache& tools, const Job& job) {
    if (!runRecipe(tools, job.format, job.input, job.output, job.value)) {
        return false;
    }
    if (job.format == ImageFormat::jpeg) {
        imagingJobs.avoidGrowth(job.input, job.output);
    }
    const bool looksCanBeLost = job.format != ImageFormat::pdf && job.format != ImageFormat::gif;
    return !looksCanBeLost || imagingJobs.keepLooks(job.input, job.output);
}

/// Throws for a source that must not be compressed. A tool that is given a damaged file ends well and makes another
/// picture of it, and one that knows no animation keeps a single frame.
PictureFacts acceptedSource(const PictureDescription& description, ImageFormat format, CompressedFor purpose) {
    const auto& facts = description.facts;
    if (!facts && description.status != codecs::SipsStatus::failed) {
        throw conversionError(description.status);
    }
    if (!facts || !facts->whole || facts->kind != rawValue(format).toLower()) {
        throw ConversionError(QStringLiteral("not a valid picture"));  // the classification's words for damage
    }
    const bool stillsOnly = format == ImageFormat::png || format == ImageFormat::avif || format == ImageFormat::heic;
    if (stillsOnly && facts->pages > 1) {
        throw ConversionError(Refusal::framesWouldBeLost);
    }
    if (facts->extras && purpose == CompressedFor::replacement) {
        throw ConversionError(Refusal::documentWouldLose);
    }
    return *facts;
}

/// Whether what was made shows all that was there. The pages of a PDF may come out turned.
bool isSamePicture(const PictureFacts& source, const std::optional<PictureFacts>& result) {
    const bool sameSize =
        result && (source.kind == u"pdf" || (result->width == source.width && result->height == source.height));
    return sameSize && result->whole && result->kind == source.kind && result->pages == source.pages &&
           result->alpha == source.alpha;
}

}  // namespace

void compressPicture(ProcessConfigCache& tools, ImageFormat format, const QString& inputPath, const QString& outputPath,
                     double value, CompressedFor purpose) {
    const ImagingJobs imagingJobs(tools);
    // The recipe runs meanwhile: most sources are what they should be.
    auto looking = std::async(std::launch::async, [&] { return imagingJobs.describe(inputPath); });
    const bool heif = format == ImageFormat::heic || format == ImageFormat::avif;
    const auto compress = heif ? &compressHeif : &compressPlain;
    const bool done = compress(imagingJobs, tools, {format, inputPath, outputPath, value});
    const PictureFacts source = acceptedSource(looking.get(), format, purpose);
    const bool alphaIsLost = format == ImageFormat::avif && source.alpha;
    if (!done || (alphaIsLost && !imagingJobs.keepAlpha(inputPath, outputPath, value))) {
        throw toolFailure();
    }
    if (!isSamePicture(source, imagingJobs.describe(outputPath).facts)) {
        logLine(QStringLiteral("[Compression] The result is not the same picture: ") + outputPath);
        throw toolFailure();
    }
}

}  // namespace sorvik
