#include "apps/sorvikbatch/compression_options.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <string>
#include <system_error>

namespace sorvik {
namespace {

struct QualityRow {
    const char* option = nullptr;
    const char* help = nullptr;
    QProperty<double> AppSettings::*setting = nullptr;
    int lowest = 1;  // the tools take a quality of 0 for none given
    int highest = 100;
    int defaultValue = 85;
    int unit = 1;  // what stands for 1 in the setting
};

constexpr std::array qualityRows{
    QualityRow{"--jpeg-quality", "lower is smaller", &AppSettings::jpegCompressionQuality},
    QualityRow{"--webp-quality", "lower is smaller", &AppSettings::webpCompressionQuality},
    QualityRow{"--heic-quality", "for results of convert; compress takes no HEIC",
               &AppSettings::heicCompressionQuality},
    QualityRow{"--avif-quality", "lower is smaller", &AppSettings::avifCompressionQuality},
    QualityRow{"--tiff-quality", "lower is smaller", &AppSettings::tiffCompressionQuality},
    // The recipe takes percent and fractions, and would read 1 percent as the whole.
    QualityRow{.option = "--pdf-quality",
               .help = "of the pictures in a document; lower is smaller",
               .setting = &AppSettings::pdfCompressionQuality,
               .unit = 100},
    QualityRow{"--png-level", "higher is smaller and slower; below 4 at most 256 colours are left",
               &AppSettings::pngCompressionLevel, 0, 9, 9},
    QualityRow{"--gif-level", "lower is smaller, with fewer colours", &AppSettings::gifCompressionLevel, 1, 9, 7},
};
static_assert(qualityRows.size() == qualityCount);

std::string range(const QualityRow& row) { return std::to_string(row.lowest) + " to " + std::to_string(row.highest); }

int parsedQuality(const QualityRow& row, const std::string& word) {
    int value = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    if (error != std::errc() || stop != end || value < row.lowest || value > row.highest) {
        throw CLI::ValidationError(row.option,
                                   "'" + word + "' can't be taken; it can be a whole number from " + range(row));
    }
    return value;
}

}  // namespace

void describeCompression(CLI::App& command, CompressionOptions& options) {
    describeText(command, "--compression-prefix", options.prefix, "Put before the name of each compressed result");
    describeText(command, "--compression-suffix", options.suffix,
                 "Put behind the name of each compressed result, before the extension");
    auto* quality = options.qualities.begin();
    for (const QualityRow& row : qualityRows) {
        const auto take = [&row, &quality = *quality++](const std::string& word) {
            quality = parsedQuality(row, word);
        };
        const std::string help = range(row) + ", " + std::to_string(row.defaultValue) + " if not given: " + row.help;
        command.add_option_function<std::string>(row.option, take, help)->type_name("N")->group("Compression");
    }
}

void applyCompression(const CompressionOptions& options, AppSettings& settings) {
    settings.compressionPrefix = options.prefix;
    settings.compressionSuffix = options.suffix;
    for (std::size_t index = 0; index < qualityRows.size(); ++index) {
        if (const auto quality = options.qualities[index]) {
            settings.*qualityRows[index].setting = static_cast<double>(*quality) / qualityRows[index].unit;
        }
    }
}

}  // namespace sorvik
