#include "engines/picture_compression.h"

#include "engines/compression_recipes.h"
#include "engines/pdf_compression.h"

namespace sorvik {
namespace {

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

}  // namespace

bool compressPicture(ProcessConfigCache& tools, ImageFormat format, const QString& inputPath, const QString& outputPath,
                     double value) {
    return runRecipe(tools, format, inputPath, outputPath, value);
}

}  // namespace sorvik
