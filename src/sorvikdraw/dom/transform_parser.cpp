#include <array>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/list_limit.h"
#include "sorvikdraw/dom/scanner.h"
#include "sorvikdraw/dom/value_parser.h"

namespace sorvik::draw {

namespace {

using dom::Transform;

constexpr std::size_t mostArguments = 6;

struct Arguments {
    std::array<float, mostArguments> values{};
    std::size_t count = 0;
};

struct Form {
    std::string_view opener;
    std::array<std::size_t, 2> counts;  ///< of arguments; either will do
    Transform (*make)(const Arguments& arguments);
};

constexpr auto forms = std::to_array<Form>({
    {"matrix(",
     {6, 6},
     [](const Arguments& a) {
         const auto& v = a.values;
         return Transform{Transform::Matrix{v[0], v[1], v[2], v[3], v[4], v[5]}};
     }},
    {"translate(",
     {1, 2},
     [](const Arguments& a) {
         return Transform{Transform::Translate{a.values[0], a.values[1]}};
     }},
    {"scale(",
     {1, 2},
     [](const Arguments& a) {
         return Transform{Transform::Scale{a.values[0], a.values[a.count == 1 ? 0 : 1]}};
     }},
    {"rotate(",
     {1, 3},
     [](const Arguments& a) {
         return a.count == 1 ? Transform{Transform::Rotate{a.values[0]}}
                             : Transform{Transform::RotatePoint{a.values[0], a.values[1], a.values[2]}};
     }},
    {"skewX(", {1, 1}, [](const Arguments& a) { return Transform{Transform::SkewX{a.values[0]}}; }},
    {"skewY(", {1, 1}, [](const Arguments& a) { return Transform{Transform::SkewY{a.values[0]}}; }},
});

// Up to the closing bracket; between two arguments a comma may stand.
std::optional<Arguments> scanArguments(Scanner& scanner) {
    Arguments arguments;
    bool comma = false;
    while (arguments.count < mostArguments) {
        const auto number = scanner.scanFloat();
        if (!number) {
            break;
        }
        arguments.values[arguments.count++] = *number;
        comma = scanner.scanString(",");
    }
    return !comma && scanner.scanString(")") ? std::optional(arguments) : std::nullopt;
}

std::optional<Transform> scanTransform(Scanner& scanner) {
    for (const auto& form : forms) {
        if (scanner.scanString(form.opener)) {
            const auto arguments = scanArguments(scanner);
            const bool fits = arguments && (arguments->count == form.counts[0] || arguments->count == form.counts[1]);
            return fits ? std::optional(form.make(*arguments)) : std::nullopt;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::vector<Transform>> ValueParser::parseTransform(std::string_view text) {
    Scanner scanner(text);
    std::vector<Transform> transforms;
    while (!scanner.isEOF()) {
        const auto transform = scanTransform(scanner);
        if (!transform) {
            return std::nullopt;
        }
        requireRoom(transforms.size(), limits::listItems, "transforms in a list");
        transforms.push_back(*transform);
    }
    return transforms;
}

}  // namespace sorvik::draw
