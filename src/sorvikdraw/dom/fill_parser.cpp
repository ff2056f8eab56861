#include <array>
#include <charconv>
#include <system_error>

#include "sorvikdraw/dom/scanner.h"
#include "sorvikdraw/dom/value_parser.h"

namespace sorvik::draw {

namespace {

using dom::Color;
using dom::Fill;

enum class WithAlpha : std::uint8_t { no, yes };

// Three values separated by commas.
template <typename Scan>
auto scanTriple(Scanner& scanner, Scan scan) -> std::optional<std::array<typename decltype(scan())::value_type, 3>> {
    const auto r = scan();
    if (!r || !scanner.scanString(",")) {
        return std::nullopt;
    }
    const auto g = scan();
    if (!g || !scanner.scanString(",")) {
        return std::nullopt;
    }
    const auto b = scan();
    if (!b) {
        return std::nullopt;
    }
    return std::array{*r, *g, *b};
}

std::optional<Color> scanRGBf(Scanner& scanner, WithAlpha withAlpha) {
    const auto rgb = scanTriple(scanner, [&] { return scanner.scanPercentage(); });
    std::optional<float> alpha = 1.0F;
    if (rgb && withAlpha == WithAlpha::yes) {
        alpha = scanner.scanString(",") ? scanner.scanFloat() : std::nullopt;
    }
    if (!rgb || !alpha || !scanner.scanString(")")) {
        return std::nullopt;
    }
    return Color{Color::RGBf{(*rgb)[0], (*rgb)[1], (*rgb)[2], *alpha}};
}

std::optional<Color> scanRGBi(Scanner& scanner, WithAlpha withAlpha) {
    const auto rgb = scanTriple(scanner, [&] { return scanner.scanUInt8(); });
    if (!rgb) {
        return std::nullopt;
    }
    std::optional<float> alpha = 1.0F;
    if (scanner.scanString(",")) {
        alpha = scanner.scanAlpha();
    } else if (withAlpha == WithAlpha::yes) {
        return std::nullopt;
    }
    if (!alpha || !scanner.scanString(")")) {
        return std::nullopt;
    }
    return Color{Color::RGBi{(*rgb)[0], (*rgb)[1], (*rgb)[2], *alpha}};
}

std::optional<Color> scanRGB(Scanner& scanner, WithAlpha withAlpha) {
    const auto start = scanner.currentIndex();
    if (auto percentages = scanRGBf(scanner, withAlpha)) {
        return percentages;
    }
    scanner.goBack(start);
    return scanRGBi(scanner, withAlpha);
}

std::optional<Color> scanP3(Scanner& scanner) {
    const auto rgb = scanTriple(scanner, [&] { return scanner.scanFloat(); });
    if (!rgb || !scanner.scanString(")")) {
        return std::nullopt;
    }
    return Color{Color::P3{(*rgb)[0], (*rgb)[1], (*rgb)[2]}};
}

std::optional<Color> scanHex(Scanner& scanner) {
    const auto run = scanner.scanCharacters("0123456789ABCDEFabcdef");
    std::uint64_t bits = 0;
    if (!run || std::from_chars(run->data(), run->data() + run->size(), bits, 16).ec != std::errc()) {
        return std::nullopt;
    }
    const auto byte = [bits](unsigned shift) { return static_cast<std::uint8_t>(bits >> shift); };
    if (run->size() == 3) {
        const auto doubled = [bits](unsigned shift) {
            return static_cast<std::uint8_t>((bits >> shift & 0xFU) * 0x11U);
        };
        return Color{Color::Hex{doubled(8), doubled(4), doubled(0)}};
    }
    return Color{Color::Hex{byte(16), byte(8), byte(0)}};
}

std::optional<Color> colorWord(std::string_view word) {
    if (word == "currentColor") {
        return Color{Color::CurrentColor{}};
    }
    if (const auto keyword = dom::colorKeyword(word)) {
        return Color{*keyword};
    }
    if (word == "none" || word == "transparent") {
        return Color{Color::None{}};
    }
    return std::nullopt;
}

std::optional<Fill> scanUrl(Scanner& scanner) {
    const auto inside = scanner.scanUpTo(")");
    auto url = inside && scanner.scanString(")") ? dom::makeURL(trimmedOfBlanks(*inside)) : std::nullopt;
    return url ? std::optional<Fill>(Boxed<dom::URL>(*std::move(url))) : std::nullopt;
}

std::optional<Fill> asFill(const std::optional<Color>& color) {
    return color ? std::optional<Fill>(*color) : std::nullopt;
}

}  // namespace

// A text that opens one form can't be of another, and no opening is a part of a word.
std::optional<dom::Fill> ValueParser::parseFill(std::string_view text) {
    Scanner scanner(text);
    if (scanner.scanString("rgb(")) {
        return asFill(scanRGB(scanner, WithAlpha::no));
    }
    if (scanner.scanString("#")) {
        return asFill(scanHex(scanner));
    }
    if (scanner.scanString("color(display-p3")) {
        return asFill(scanP3(scanner));
    }
    if (scanner.scanString("url(")) {
        return scanUrl(scanner);
    }
    if (scanner.scanString("rgba(")) {
        return asFill(scanRGB(scanner, WithAlpha::yes));
    }
    return asFill(colorWord(trimmed(text)));
}

std::optional<dom::Color> ValueParser::parseColor(std::string_view text) {
    const auto fill = parseFill(text);
    const auto* const color = fill ? std::get_if<Color>(&*fill) : nullptr;
    return color != nullptr ? std::optional(*color) : std::nullopt;
}

}  // namespace sorvik::draw
