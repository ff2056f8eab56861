#include "sorvikdraw/tool/process_image.h"

#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "sorvikdraw/tool/error.h"

namespace sorvik::draw::command_line {
namespace {

namespace fs = std::filesystem;

constexpr double bestQuality = 1.0;

SVG loaded(const Configuration& configuration) {
    std::optional<SVG> svg = SVG::load(configuration.input, makeSVGOptions(configuration), SVG::Caller::tool);
    if (!svg) {
        throw Error::invalid("");
    }
    return std::move(*svg);
}

Error notBuilt(Format format) {
    return Error::unsupported("--format " + std::string(row(format).text) + ": not built yet");
}

}  // namespace

void requireInput(const fs::path& input) {
    std::error_code error;
    const fs::file_status status = fs::status(input, error);
    if (status.type() == fs::file_type::not_found) {
        throw Error::fileNotFound(input.string() + ": file not found");
    }
    if (status.type() == fs::file_type::none) {
        throw std::system_error(error, input.string());
    }
    if (status.type() == fs::file_type::directory) {
        throw Error::invalid(input.string() + ": the input is a folder");
    }
    if (status.type() != fs::file_type::regular) {
        throw Error::invalid(input.string() + ": the input is no regular file");
    }
}

SVG::Options makeSVGOptions(const Configuration& configuration) { return configuration.options; }

SVG::Insets makeImageInsets(const Insets& insets) {
    if (insets == Insets()) {
        return {};
    }
    if (!insets.top || !insets.left || !insets.bottom || !insets.right) {
        throw Error::unsupported("--insets: auto for some sides only is not supported for pictures");
    }
    return {*insets.top, *insets.left, *insets.bottom, *insets.right};
}

std::vector<std::byte> processImage(const Configuration& with) {
    requireInput(with.input);
    if (with.format == Format::swift || with.format == Format::sfsymbol) {
        throw notBuilt(with.format);
    }
    return processImage(loaded(with), with);
}

std::vector<std::byte> processImage(SVG svg, const Configuration& with) {
    const SVG::Insets insets = makeImageInsets(with.insets);
    if (with.size) {
        svg.resize({static_cast<double>(with.size->width), static_cast<double>(with.size->height)});
    }
    const double scale = row(with.scale).number;
    switch (with.format) {
        case Format::jpeg:
            return svg.jpegData(scale, bestQuality, insets);
        case Format::png:
            return svg.pngData(scale, insets);
        case Format::pdf:
            svg.expand(insets);
            return svg.pdfData();
        case Format::swift:
        case Format::sfsymbol:
            break;
    }
    throw notBuilt(with.format);
}

}  // namespace sorvik::draw::command_line
