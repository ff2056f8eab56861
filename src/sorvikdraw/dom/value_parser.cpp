#include "sorvikdraw/dom/value_parser.h"

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/list_limit.h"
#include "sorvikdraw/dom/scanner.h"

namespace sorvik::draw {

namespace {

std::optional<dom::Point> scanPoint(Scanner& scanner) {
    static constexpr CharacterSet delimiters(",;");
    const auto x = scanner.scanCoordinate();
    scanner.scanCharacter(delimiters);
    const auto y = scanner.scanCoordinate();
    scanner.scanCharacter(delimiters);
    return x && y ? std::optional(dom::Point{*x, *y}) : std::nullopt;
}

}  // namespace

std::optional<float> ValueParser::parseFloat(std::string_view text) { return Scanner(text).scanFloat(); }

std::optional<float> ValueParser::parsePercentage(std::string_view text) {
    Scanner scanner(text);
    const auto percentage = scanner.scanPercentage();
    return percentage ? percentage : scanner.scanPercentageFloat();
}

std::optional<float> ValueParser::parseCoordinate(std::string_view text) { return Scanner(text).scanCoordinate(); }

std::optional<std::int32_t> ValueParser::parseLength(std::string_view text) { return Scanner(text).scanLength(); }

std::optional<bool> ValueParser::parseBool(std::string_view text) { return Scanner(text).scanBool(); }

std::optional<std::vector<float>> ValueParser::parseFloats(std::string_view text) {
    Scanner scanner(text);
    std::vector<float> numbers;
    while (!scanner.isEOF()) {
        const auto number = scanner.scanFloat();
        if (!number) {
            return std::nullopt;
        }
        scanner.scanString(",");
        requireRoom(numbers.size(), limits::listItems, "numbers in a list");
        numbers.push_back(*number);
    }
    return numbers;
}

std::optional<std::vector<dom::Point>> ValueParser::parsePoints(std::string_view text) {
    Scanner scanner(text);
    std::vector<dom::Point> points;
    while (!scanner.isEOF()) {
        const auto point = scanPoint(scanner);
        if (!point) {
            return std::nullopt;
        }
        requireRoom(points.size(), limits::pathSegments, "points in a list");
        points.push_back(*point);
    }
    points.shrink_to_fit();
    return points;
}

std::optional<dom::URL> ValueParser::parseUrl(std::string_view text) { return dom::makeURL(text); }

std::optional<dom::URL> ValueParser::parseUrlSelector(std::string_view text) {
    Scanner scanner(text);
    if (!scanner.scanString("url(")) {
        return std::nullopt;
    }
    const auto inside = scanner.scanUpTo(")");
    if (!inside || !scanner.scanString(")") || !scanner.isEOF()) {
        return std::nullopt;
    }
    return parseUrl(trimmedOfBlanks(*inside));
}

}  // namespace sorvik::draw
