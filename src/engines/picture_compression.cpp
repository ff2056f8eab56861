#include "engines/picture_compression.h"

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

using imaging::PictureFacts;

const QString tempPrefix = QStringLiteral("sorvik_compressed");

/// What the classification of failures takes for a damaged file.
ConversionError damaged() { return ConversionError(QStringLiteral("not a valid picture")); }

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

    /// Looks at the input. A tool that is given a damaged file ends well and makes another picture of it.
    [[nodiscard]] PictureFacts sourceFacts(const QString& path, ImageFormat format) const {
        const auto description = imaging::describePicture(client_, path);
        const auto& facts = description.facts;
        if (!facts && description.status != codecs::SipsStatus::failed) {
            throw conversionError(description.status);
        }
        if (!facts || !facts->whole || facts->kind != rawValue(format).toLower()) {
            throw damaged();
        }
        return *facts;
    }

    /// Whether what was made shows all that was there.
    [[nodiscard]] bool isSamePicture(const PictureFacts& source, const QString& result) const {
        const auto facts = imaging::describePicture(client_, result).facts;
        const bool same = facts && facts->whole && facts->kind == source.kind && facts->width == source.width &&
                          facts->height == source.height && facts->pages == source.pages &&
                          facts->alpha == source.alpha;
        if (!same) {
            logLine(QStringLiteral("[Compression] The result is not the same picture: ") + result);
        }
        return same;
    }

    /// A JPEG of low quality comes out larger when it is encoded at a higher one. Nothing is gained then but bytes:
    /// its own coefficients say the same in fewer.
    void avoidGrowth(const QString& source, const QString& result) const {
        if (fileSize(result) <= fileSize(source)) {
            return;
        }
        const TempFile recoded(tempPrefix, QStringLiteral("jpg"));
        if (client_.run(imaging::recodeArguments(source, recoded.path())).finished() &&
            fileSize(recoded.path()) < fileSize(result) && moveFile(recoded.path(), result)) {
            logLine(QStringLiteral("[Compression] The smaller lossless copy could not be used for ") + result);
        }
    }

    /// An upright sRGB copy for a recipe to read.
    [[nodiscard]] bool copyPixels(const QString& source, const QString& copy) const {
        return client_
            .run(imaging::intermediateArguments({source}, copy, imaging::Colors::sRGB, imaging::Metadata::stripped))
            .finished();
    }

    /// Encodes an AVIF anew, now with the transparency that ImageMagick 6 leaves out: it would come out black.
    [[nodiscard]] bool addAlpha(const QString& pixels, const QString& result, double quality) const {
        return client_.run(imaging::carryMetadataArguments(pixels, result, static_cast<int>(quality))).finished();
    }

    /// A picture that lies on its side or has other colours is another one.
    [[nodiscard]] bool keepLooks(const QString& source, const QString& result) const {
        return client_.run(imaging::keepLooksArguments(source, result)).finished();
    }

private:
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
bool compressHeif(const ImagingJobs& imagingJobs, ProcessConfigCache& tools, const PictureFacts& facts,
                  const Job& job) {
    const TempFile pixels(tempPrefix, QStringLiteral("png"));
    if (!imagingJobs.copyPixels(job.input, pixels.path()) ||
        !runRecipe(tools, job.format, pixels.path(), job.output, job.value)) {
        return false;
    }
    const bool alphaIsLost = job.format == ImageFormat::avif && facts.alpha;
    return (!alphaIsLost || imagingJobs.addAlpha(pixels.path(), job.output, job.value)) &&
           imagingJobs.isSamePicture(facts, job.output);
}

bool compressPlain(const ImagingJobs& imagingJobs, ProcessConfigCache& tools, const PictureFacts& facts,
                   const Job& job) {
    if (!runRecipe(tools, job.format, job.input, job.output, job.value)) {
        return false;
    }
    if (job.format == ImageFormat::jpeg) {
        imagingJobs.avoidGrowth(job.input, job.output);
    }
    const bool looksCanBeLost = job.format != ImageFormat::pdf && job.format != ImageFormat::gif;
    return (!looksCanBeLost || imagingJobs.keepLooks(job.input, job.output)) &&
           imagingJobs.isSamePicture(facts, job.output);
}

}  // namespace

void compressPicture(ProcessConfigCache& tools, ImageFormat format, const QString& inputPath, const QString& outputPath,
                     double value) {
    const ImagingJobs imagingJobs(tools);
    const PictureFacts facts = imagingJobs.sourceFacts(inputPath, format);
    const bool heif = format == ImageFormat::heic || format == ImageFormat::avif;
    const auto compress = heif ? &compressHeif : &compressPlain;
    if (!compress(imagingJobs, tools, facts, {format, inputPath, outputPath, value})) {
        throw toolFailure();
    }
}

}  // namespace sorvik
