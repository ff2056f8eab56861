#include "sorvikdraw/tool/command_line.h"

#include <array>
#include <charconv>
#include <string>
#include <system_error>

#include "sorvikdraw/dom/printable_text.h"
#include "sorvikdraw/dom/scanner.h"
#include "sorvikdraw/tool/error.h"
#include "sorvikdraw/tool/modifier.h"

namespace sorvik::draw::command_line {
namespace {

using Arguments = std::span<const std::string_view>;
using OptionalText = std::optional<std::string_view>;

constexpr std::string_view helpHint = "; --help tells more";
constexpr std::size_t firstModifier = 2;

/// An argument as it stands in a sentence: there is no end to what may be passed.
std::string quoted(std::string_view argument) {
    constexpr std::size_t longest = 100;
    return printable(argument, longest);
}

/// With the modifier itself.
constexpr std::size_t argumentCount(const ModifierRow& row) { return row.value.empty() ? 1 : 2; }

/// The modifiers that were given, with their values; the value of one that takes none is empty.
class Given {
public:
    explicit Given(Arguments arguments) {
        while (!arguments.empty()) {
            arguments = arguments.subspan(take(arguments));
        }
    }
    [[nodiscard]] const OptionalText& operator[](Modifier modifier) const {
        return values_.at(static_cast<std::size_t>(modifier));
    }
    [[nodiscard]] bool has(Modifier modifier) const { return (*this)[modifier].has_value(); }

private:
    /// Takes the first modifier; how many arguments that was.
    std::size_t take(Arguments arguments) {
        const std::string_view argument = arguments.front();
        const ModifierRow* row = findModifier(argument);
        if (row == nullptr) {
            throw Error::invalid(quoted(argument) + ": no such option" + std::string(helpHint));
        }
        const std::size_t count = argumentCount(*row);
        if (arguments.size() < count) {
            throw Error::invalid(std::string(argument) + ": needs a value behind it" + std::string(helpHint));
        }
        OptionalText& value = values_.at(static_cast<std::size_t>(row->modifier));
        if (value) {
            throw Error::invalid(std::string(argument) + ": given twice");
        }
        value = count == 2 ? arguments[1] : std::string_view();
        return count;
    }

    std::array<OptionalText, modifierCount> values_;
};

Error badValue(std::string_view option, std::string_view value, const std::string& allowed) {
    return Error::invalid(std::string(option) + " " + quoted(value) + ": expected " + allowed);
}

/// "a, b or c"
template <typename Rows>
std::string alternatives(const Rows& rows) {
    std::string text;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string_view separator = i == 0 ? "" : i + 1 == rows.size() ? " or " : ", ";
        text.append(separator).append(rows[i].text);
    }
    return text;
}

template <typename Rows>
const auto& rowNamed(const Rows& rows, std::string_view option, std::string_view value) {
    for (const auto& row : rows) {
        if (row.text == value) {
            return row;
        }
    }
    throw badValue(option, value, alternatives(rows));
}

/// Decimal digits, perhaps with a sign, in the range of T.
template <typename T>
std::optional<T> scanInteger(Scanner& scanner) {
    std::string_view text = scanner.scanCharacters("+-0123456789").value_or("");
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);  // from_chars knows no plus
    }
    T value{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && rest == end ? std::optional(value) : std::nullopt;
}

std::filesystem::path standardised(const std::filesystem::path& path) {
    const std::filesystem::path normal = path.lexically_normal();
    return normal.has_filename() || !normal.has_relative_path() ? normal : normal.parent_path();
}

std::filesystem::path fileAt(std::string_view path, const std::filesystem::path& baseDirectory) {
    return standardised(baseDirectory / path);
}

std::optional<std::filesystem::path> optionalFileAt(const OptionalText& path,
                                                    const std::filesystem::path& baseDirectory) {
    return path ? std::optional(fileAt(*path, baseDirectory)) : std::nullopt;
}

Format parseFormat(const OptionalText& value) {
    if (!value) {
        throw Error::invalid("--format is missing: expected " + alternatives(formats));
    }
    return rowNamed(formats, "--format", *value).format;
}

Scale parseScale(const OptionalText& value) {
    return value ? rowNamed(scales, "--scale", *value).scale : Scale::normal;
}

std::optional<API> parseAPI(const OptionalText& value) {
    return value ? std::optional(rowNamed(apis, "--api", *value).api) : std::nullopt;
}

std::optional<sf_symbol_renderer::SizeCategory> parseSymbolSize(const OptionalText& value, Format format) {
    if (format != Format::sfsymbol || !value) {
        return std::nullopt;
    }
    return rowNamed(sizeCategories, "--size", *value).category;
}

std::optional<std::int64_t> parsePrecision(const OptionalText& value) {
    if (!value) {
        return std::nullopt;
    }
    Scanner scanner(*value);
    const auto precision = scanInteger<std::int64_t>(scanner);
    if (!precision || !scanner.isEOF()) {
        throw badValue("--precision", *value, "a whole number");
    }
    return precision;
}

/// Takes a number, or "auto", which leaves the side absent; false when it is neither.
bool scanInset(Scanner& scanner, std::optional<double>& side) {
    if (scanner.scanString("auto")) {
        return true;
    }
    side = scanner.scanDouble();
    return side.has_value();
}

void requireArguments(Arguments arguments) {
    if (arguments.size() < firstModifier) {
        throw Error::invalid("no input: expected INPUT --format FORMAT" + std::string(helpHint));
    }
    if (arguments.size() == firstModifier) {
        throw Error::invalid("--format is missing: expected " + alternatives(formats));
    }
}

}  // namespace

Configuration parseConfiguration(Arguments from, const std::filesystem::path& baseDirectory) {
    requireArguments(from);
    Configuration configuration;
    configuration.input = fileAt(from[1], baseDirectory);
    const Given given(from.subspan(firstModifier));
    configuration.format = parseFormat(given[Modifier::format]);
    configuration.size = parseSize(given[Modifier::size], configuration.format);
    configuration.scale = parseScale(given[Modifier::scale]);
    configuration.precision = parsePrecision(given[Modifier::precision]);
    configuration.insets = parseInsets(given[Modifier::insets]);
    configuration.api = parseAPI(given[Modifier::api]);
    configuration.inputUltralight = optionalFileAt(given[Modifier::ultralight], baseDirectory);
    configuration.insetsUltralight = parseInsets(given[Modifier::ultralightInsets], "--ultralight-insets");
    configuration.inputBlack = optionalFileAt(given[Modifier::black], baseDirectory);
    configuration.insetsBlack = parseInsets(given[Modifier::blackInsets], "--black-insets");
    configuration.output = optionalFileAt(given[Modifier::output], baseDirectory)
                               .value_or(makeOutput(configuration.input, configuration.format, configuration.scale));
    configuration.symbolSize = parseSymbolSize(given[Modifier::size], configuration.format);
    configuration.options =
        given.has(Modifier::hideUnsupportedFilters) ? SVG::hideUnsupportedFilters : SVG::defaultOptions;
    configuration.isLegacyInsetsEnabled = given.has(Modifier::legacy);
    return configuration;
}

bool asksForHelp(Arguments arguments) {
    constexpr std::string_view help = "--help";
    if (arguments.size() > 1 && arguments[1] == help) {
        return true;
    }
    std::size_t i = firstModifier;
    while (i < arguments.size() && arguments[i] != help) {
        const ModifierRow* row = findModifier(arguments[i]);
        if (row == nullptr) {
            return false;
        }
        i += argumentCount(*row);
    }
    return i < arguments.size();
}

std::optional<Size> parseSize(OptionalText value, Format format) {
    if (!value || format == Format::sfsymbol) {
        return std::nullopt;
    }
    Scanner scanner(*value);
    const auto width = scanInteger<std::int32_t>(scanner);
    const bool separated = scanner.scanString("x");
    const auto height = scanInteger<std::int32_t>(scanner);
    if (width.value_or(0) < 1 || !separated || height.value_or(0) < 1 || !scanner.isEOF()) {
        throw badValue("--size", *value, "WIDTHxHEIGHT, two whole numbers from 1 to 2147483647");
    }
    return Size{*width, *height};
}

Insets parseInsets(OptionalText value, std::string_view option) {
    if (!value || *value == "auto") {
        return {};
    }
    Scanner scanner(*value);
    Insets insets;
    std::string_view separator;
    for (std::optional<double>* side : {&insets.top, &insets.left, &insets.bottom, &insets.right}) {
        if (!scanner.scanString(separator) || !scanInset(scanner, *side)) {
            throw badValue(option, *value, "auto, or TOP,LEFT,BOTTOM,RIGHT, each a number or auto");
        }
        separator = ",";
    }
    if (!scanner.isEOF()) {
        throw badValue(option, *value, "four sides and nothing behind them");
    }
    return insets;
}

std::filesystem::path makeOutput(const std::filesystem::path& input, Format format, Scale scale) {
    const FormatRow& kind = row(format);
    std::filesystem::path name = input.stem();
    name += kind.suffix;
    name += format == Format::png ? row(scale).pngSuffix : std::string_view();
    name += ".";
    name += kind.extension;
    return standardised(input.parent_path() / name);
}

}  // namespace sorvik::draw::command_line
