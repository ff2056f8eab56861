#include "bundle/magick/decode_steps.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string_view>

namespace sorvik::bundle {

namespace {

// By absolute path: PATH may name other programs of these names first.
constexpr const char* rawProgram = "/usr/bin/dcraw_emu";
constexpr const char* postScriptProgram = "/usr/bin/gs";

constexpr std::array<std::string_view, 10> rawExtensions{"raw", "cr2", "cr3", "nef", "arw",
                                                         "raf", "dng", "rw2", "orf", "pef"};
constexpr std::array<std::string_view, 4> postScriptExtensions{"eps", "epsf", "epsi", "ps"};
constexpr std::array<std::string_view, 3> drawingExtensions{"svg", "svgz", "mvg"};
constexpr std::array<std::string_view, 2> vectorExtensions{"svg", "svgz"};
constexpr std::array<std::string_view, 4> opaqueExtensions{"jpg", "jpeg", "jpe", "bmp"};
constexpr std::array<std::string_view, 3> deepExtensions{"png", "tif", "tiff"};

struct OptionRow {
    std::string_view name;
    std::size_t values;
};

// What our vectors have in front of their input.
constexpr std::array leadingOptions{
    OptionRow{"-define", 1}, OptionRow{"-density", 1}, OptionRow{"-format", 1},
    OptionRow{"-ping", 0},   OptionRow{"-quiet", 0},   OptionRow{"-verbose", 0},
};

struct RawRow {
    std::string_view define;
    std::array<std::string_view, 3> words;  ///< as many as are not empty
    bool hasValue;
};

// "raw:no-crop" has no counterpart: the decoder never crops to less than what the camera itself shows. Its own tone
// curve is that of television (ITU-R BT.709), too dark for a picture whose profile gets lost; 2.4 and 12.92 make
// that of sRGB (IEC 61966-2-1).
constexpr std::array rawOptions{
    RawRow{"raw:use-camera-wb", {"-w"}, false},
    RawRow{"raw:auto-gamma", {"-g", "2.4", "12.92"}, false},
    RawRow{"raw:interpolation-quality", {"-q"}, true},
    RawRow{"raw:no-auto-bright", {"-W"}, false},
};

constexpr std::string_view srgbCurve = "raw:auto-gamma=true";

// The decoder describes its curve by a plain power, which is none of sRGB's: up to a tenth off in the shadows.
constexpr const char* srgbProfile = "/usr/share/color/icc/ghostscript/srgb.icc";

constexpr std::string_view rawPrefix = "raw:";

template <typename Names>
bool hasExtension(const std::string& path, const Names& names) {
    const std::size_t dot = path.find_last_of("./");
    if (dot == std::string::npos || path[dot] == '/') {
        return false;
    }
    std::string extension = path.substr(dot + 1);
    std::ranges::transform(extension, extension.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return std::ranges::find(names, extension) != names.end();
}

bool identifies(const std::vector<std::string>& arguments) {
    return !arguments.empty() && arguments.front() == "identify";
}

/// The value of an option that stands in front of the input.
std::optional<std::string> leadingValue(const std::vector<std::string>& arguments, std::string_view option) {
    const std::size_t end = inputOperand(arguments).value_or(0);
    const auto last = arguments.begin() + static_cast<std::ptrdiff_t>(end);
    const auto found = std::find(arguments.begin(), last, option);
    return found != last ? std::optional(*std::next(found)) : std::nullopt;
}

bool isRawDefine(const std::vector<std::string>& arguments, std::size_t index) {
    return arguments[index] == "-define" && index + 1 < arguments.size() && arguments[index + 1].starts_with(rawPrefix);
}

void addRawOption(std::vector<std::string>& vector, std::string_view define) {
    const std::size_t equals = std::min(define.find('='), define.size());
    const std::string_view value = define.substr(std::min(equals + 1, define.size()));
    const auto row = std::ranges::find(rawOptions, define.substr(0, equals), &RawRow::define);
    if (row == rawOptions.end() || (!row->hasValue && value == "false")) {
        return;
    }
    const auto end = std::ranges::find(row->words, std::string_view());
    vector.insert(vector.end(), row->words.begin(), end);
    if (row->hasValue) {
        vector.emplace_back(value);
    }
}

std::string number(double value) {
    std::array<char, 64> digits{};
    const auto result = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, 4);
    return {digits.data(), result.ptr};
}

long pixels(double points, double density) {
    constexpr double pointsAnInch = 72;
    constexpr double beyondAll = 1e9;
    return std::max(1L, std::lround(std::min(points / pointsAnInch * density, beyondAll)));
}

/// Before the text: the drawing's corner goes to the page's, and what the text has to leave in balance is noted. Of
/// the graphics states, which can't be counted, the lowest is marked by its line width.
std::string prologue(const Raster& raster) {
    return "<</Install {" + number(0.0 - raster.left) + " " + number(0.0 - raster.bottom) +
           " translate}>> setpagedevice userdict /sorvikstart [countdictstack vmstatus pop pop] put "
           "0.5 setlinewidth gsave 1 setlinewidth";
}

/// Behind it: a text that is whole but never shows its page gets it shown, whatever it made of the operator's name.
std::string epilogue(bool ended) {
    const std::string balance =
        "countdictstack sorvikstart 0 get eq and vmstatus pop pop sorvikstart 1 get eq and "
        "grestore currentlinewidth 0.5 eq and ";
    return "currentpagedevice /PageCount get 0 eq " + (ended ? std::string() : balance) +
           "{systemdict /showpage get exec} if";
}

struct PropertyRow {
    const char* name;     ///< as ImageMagick 7 has it from a camera's file
    const char* exif;     ///< where the file's own EXIF has it
    const char* decoded;  ///< where the decoded TIFF has it
};

constexpr std::array cameraRows{
    PropertyRow{"dng:make", "%[exif:Make]", "%[tiff:make]"},
    PropertyRow{"dng:camera.model.name", "%[exif:Model]", "%[tiff:model]"},
    PropertyRow{"dng:create.date", "%[exif:DateTime]", "%[tiff:timestamp]"},
};

}  // namespace

std::optional<std::size_t> inputOperand(const std::vector<std::string>& arguments) {
    std::size_t index = identifies(arguments) ? 1 : 0;
    while (index < arguments.size() && (arguments[index].starts_with('-') || arguments[index].starts_with('+'))) {
        const auto row = std::ranges::find(leadingOptions, arguments[index], &OptionRow::name);
        if (row == leadingOptions.end()) {
            return std::nullopt;
        }
        index += 1 + row->values;
    }
    return index < arguments.size() ? std::optional(index) : std::nullopt;
}

Decoding decodingOf(const std::string& path) {
    if (hasExtension(path, rawExtensions)) {
        return Decoding::cameraRaw;
    }
    return hasExtension(path, postScriptExtensions) ? Decoding::postScript : Decoding::none;
}

bool wantsSvg(const std::vector<std::string>& arguments) {
    const auto input = inputOperand(arguments);
    return input && !identifies(arguments) && *input + 1 < arguments.size() &&
           hasExtension(arguments.back(), std::array<std::string_view, 1>{"svg"}) &&
           !hasExtension(arguments[*input], drawingExtensions);
}

bool mayBeSvg(const std::string& path, std::string_view head) {
    return hasExtension(path, vectorExtensions) || head.starts_with('<');
}

MagickInvocation rawDecoder(const std::vector<std::string>& arguments, const std::string& input,
                            const std::string& output) {
    MagickInvocation decoder{rawProgram, {rawProgram}};
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        if (isRawDefine(arguments, index)) {
            addRawOption(decoder.arguments, arguments[index + 1]);
        }
    }
    if (!identifies(arguments) && hasExtension(arguments.back(), deepExtensions)) {
        decoder.arguments.emplace_back("-6");
    }
    decoder.arguments.insert(decoder.arguments.end(), {"-T", "-Z", output, input});
    return decoder;
}

Raster rasterOf(const std::vector<std::string>& arguments, const std::optional<BoundingBox>& box) {
    constexpr double densest = 10000;
    Raster raster;
    const std::string value = leadingValue(arguments, "-density").value_or(std::string());
    double density = 0;
    std::from_chars(value.data(), value.data() + value.size(), density);
    if (density >= 1 && density <= densest) {
        raster.density = density;
    }
    if (box) {
        raster.width = pixels(box->right - box->left, raster.density);
        raster.height = pixels(box->top - box->bottom, raster.density);
        raster.left = box->left;
        raster.bottom = box->bottom;
    }
    return raster;
}

MagickInvocation postScriptRenderer(const Raster& raster, bool ended, const std::string& input,
                                    const std::string& output) {
    MagickInvocation renderer{postScriptProgram, {postScriptProgram}};
    auto& vector = renderer.arguments;
    vector.insert(vector.end(), {"-q", "-sstdout=%stderr", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-dNOPROMPT", "-dNOEPS",
                                 "-dMaxBitmap=500000000", "-dAlignToPixels=0", "-dGridFitTT=2", "-dTextAlphaBits=4",
                                 "-dGraphicsAlphaBits=4", "-sDEVICE=pngalpha", "-r" + number(raster.density)});
    if (raster.width > 0) {
        vector.push_back("-g" + std::to_string(raster.width) + "x" + std::to_string(raster.height));
        vector.emplace_back("-dFIXEDMEDIA");
    }
    vector.insert(vector.end(), {"-sOutputFile=" + output, "-c", prologue(raster), "-f", input, "-c", epilogue(ended)});
    return renderer;
}

bool wantsCameraReport(const std::vector<std::string>& arguments) {
    const auto input = inputOperand(arguments);
    return input && identifies(arguments) && decodingOf(arguments[*input]) == Decoding::cameraRaw &&
           std::ranges::count(arguments, "-verbose") > 0;
}

MagickInvocation cameraReporter(const std::string& input, bool decoded, const std::string& output) {
    std::vector<std::string> vector{input};
    for (const PropertyRow& row : cameraRows) {
        vector.insert(vector.end(), {"-set", row.name, decoded ? row.decoded : row.exif});
    }
    vector.insert(vector.end(), {"-verbose", "info:" + output});
    return magickInvocation(vector);
}

MagickInvocation continuation(const std::vector<std::string>& arguments, Decoding decoding, const std::string& input,
                              const std::string& svgPicture) {
    const std::size_t operand = inputOperand(arguments).value_or(0);
    std::vector<std::string> vector;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        if (index < operand && decoding == Decoding::cameraRaw && isRawDefine(arguments, index)) {
            ++index;
            continue;
        }
        const bool last = index + 1 == arguments.size() && index > operand;
        if (last && decoding == Decoding::postScript && hasExtension(arguments[index], opaqueExtensions)) {
            vector.insert(vector.end(), {"-background", "white", "-alpha", "remove", "-alpha", "off"});
        }
        vector.push_back(index == operand && decoding != Decoding::none ? input : arguments[index]);
        if (index == operand && decoding != Decoding::none && !identifies(arguments)) {
            // A resolution a centimetre, as the decoded PNG has it, rounds to 299.72 dots an inch in a JPEG.
            vector.insert(vector.end(), {"-units", "PixelsPerInch"});
            if (decoding == Decoding::cameraRaw && std::ranges::find(arguments, srgbCurve) != arguments.end()) {
                vector.insert(vector.end(), {"+profile", "icc", "-profile", srgbProfile});
            }
        }
    }
    if (!svgPicture.empty()) {
        vector.back() = svgPicture;
    }
    return magickInvocation(vector);
}

}  // namespace sorvik::bundle
