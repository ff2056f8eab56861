#include "apps/sorvikbatch/convert_options.h"

#include <CLI/CLI.hpp>

#include <map>
#include <string>

namespace sorvik {
namespace {

std::map<QString, ImageFormat> formatNames() {
    std::map<QString, ImageFormat> names;
    for (const ImageFormat format : allImageFormats()) {
        names[rawValue(format).toLower()] = format;
        names[fileExtension(format)] = format;
    }
    names[QStringLiteral("tif")] = ImageFormat::tiff;
    return names;
}

std::string formatList() {
    QStringList names;
    for (const ImageFormat format : allImageFormats()) {
        names << rawValue(format).toLower();
    }
    return names.join(QStringLiteral(", ")).toStdString();
}

ImageFormat formatNamed(const std::string& name) {
    const auto names = formatNames();
    const auto format = names.find(QString::fromStdString(name).toLower());
    if (format == names.end()) {
        throw CLI::ValidationError("--to", "'" + name + "' is no format to convert to; it can be " + formatList());
    }
    return format->second;
}

}  // namespace

void describeConvert(CLI::App& command, ConvertOptions& options, const QString& folder) {
    command
        .add_option_function<std::string>(
            "--to", [&options](const std::string& name) { options.to = formatNamed(name); },
            "The format to convert to: " + formatList())
        ->required()
        ->type_name("FORMAT");
    command.add_flag("--strip-metadata", options.stripMetadata, "Leave EXIF, XMP and IPTC out of the results");
    describeText(command, "--output-prefix", options.outputPrefix, "Put before each result's name");
    describeText(command, "--output-suffix", options.outputSuffix,
                 "Put behind each result's name, before the extension");
    command.add_flag("--compress", options.compress,
                     "Compress the results; the options below that speak of compression are for it");
    describeCompression(command, options.compression);
    describeCommon(command, options.common, "The files to convert; results lie beside them", folder);
    command.footer(
        "Each result is written beside its source and replaces what stands there under its name.\n"
        "One line is printed a file as it ends: name, from, to, outcome, size, and what compression has saved.\n"
        "The summary comes last.\n"
        "Exit status: 0 when every file succeeded, 1 when one failed, 2 for bad usage.");
}

}  // namespace sorvik
