#include "core/format_mapping_reader.h"

#include <algorithm>

namespace sorvik {
namespace {

QString keyOf(InputFormat input) { return QStringLiteral("defaultOutputFormat_") + fileExtension(input); }

std::optional<ImageFormat> formatOfExtension(const QString& extension) {
    const auto formats = allImageFormats();
    const auto found =
        std::ranges::find(formats, extension.toLower(), [](ImageFormat each) { return fileExtension(each); });
    return found == formats.end() ? std::nullopt : std::optional(*found);
}

bool isOffered(ImageFormat output, InputFormat input) {
    const auto offered = supportedOutputFormats(input);
    return std::ranges::find(offered, output) != offered.end();
}

}  // namespace

std::optional<ImageFormat> FormatMappingReader::mapping(InputFormat input) const {
    const QString text = store_.text(keyOf(input));
    auto format = imageFormatFromRawValue(text);
    if (!format) {
        format = formatOfExtension(text);
        if (format) {
            store_.setValue(keyOf(input), rawValue(*format));
        }
    }
    return format && isOffered(*format, input) ? format : std::nullopt;
}

void FormatMappingReader::setMapping(std::optional<ImageFormat> output, InputFormat input) const {
    if (!output) {
        store_.remove(keyOf(input));
    } else if (isOffered(*output, input)) {
        store_.setValue(keyOf(input), rawValue(*output));
    }
}

std::map<InputFormat, ImageFormat> FormatMappingReader::allMappings() const {
    std::map<InputFormat, ImageFormat> mappings;
    for (const InputFormat input : allInputFormats()) {
        if (const auto output = mapping(input)) {
            mappings.emplace(input, *output);
        }
    }
    return mappings;
}

}  // namespace sorvik
