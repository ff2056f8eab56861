#include "core/compression_values.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace sorvik {
namespace {

enum class Scale { quality, pngLevel, gifLevel };

struct Row {
    ImageFormat format;
    QProperty<double> AppSettings::*setting;
    double defaultValue;
    Scale scale;
};

constexpr std::array rows{
    Row{ImageFormat::jpeg, &AppSettings::jpegCompressionQuality, 85, Scale::quality},
    Row{ImageFormat::png, &AppSettings::pngCompressionLevel, 9, Scale::pngLevel},
    Row{ImageFormat::gif, &AppSettings::gifCompressionLevel, 7, Scale::gifLevel},
    Row{ImageFormat::heic, &AppSettings::heicCompressionQuality, 85, Scale::quality},
    Row{ImageFormat::tiff, &AppSettings::tiffCompressionQuality, 85, Scale::quality},
    Row{ImageFormat::webp, &AppSettings::webpCompressionQuality, 85, Scale::quality},
    Row{ImageFormat::pdf, &AppSettings::pdfCompressionQuality, 85, Scale::quality},
    Row{ImageFormat::avif, &AppSettings::avifCompressionQuality, 85, Scale::quality},
};

constexpr double lowestPngLevel = 0;
constexpr double highestPngLevel = 9;

}  // namespace

double compressionValue(ImageFormat format, const AppSettings* settings) {
    const auto* row = std::ranges::find(rows, format, &Row::format);
    if (row == rows.end()) {
        return 0;
    }
    const double value = settings == nullptr ? row->defaultValue : (settings->*row->setting).value();
    switch (row->scale) {
        case Scale::quality:
            return value;
        case Scale::gifLevel:
            return std::trunc(value);
        case Scale::pngLevel:
            return std::clamp(std::trunc(value), lowestPngLevel, highestPngLevel);
    }
    Q_UNREACHABLE();
}

}  // namespace sorvik
