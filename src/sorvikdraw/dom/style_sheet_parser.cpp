#include "sorvikdraw/dom/style_sheet_parser.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/list_limit.h"
#include "sorvikdraw/dom/presentation_attributes_parser.h"
#include "sorvikdraw/dom/presentation_fields.h"
#include "sorvikdraw/dom/scanner.h"

namespace sorvik::draw {

namespace {

using Selector = dom::StyleSheet::Selector;

/// What is declared for a selector: the text of each presentation attribute, by its field. Other names are dropped
/// as they are read.
using Declarations = std::array<std::optional<std::string_view>, dom::presentationFields>;

constexpr auto lineEnds =
    std::to_array<std::string_view>({"\n", "\v", "\f", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"});

std::size_t endOfLine(std::string_view text, std::size_t start) {
    for (auto at = start; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte >= ' ' && byte < 0x80) {
            continue;
        }
        for (const auto end : lineEnds) {
            if (text.substr(at).starts_with(end)) {
                return at;
            }
        }
    }
    return text.size();
}

// A comment runs from the first "/*" of a line to the last "*/" of it; one that goes over lines is none.
void appendWithoutComment(std::string& kept, std::string_view line) {
    const auto open = line.find("/*");
    const auto close = line.rfind("*/");
    if (open == std::string_view::npos || close == std::string_view::npos || close < open + 2) {
        kept += line;
        return;
    }
    kept += line.substr(0, open);
    kept += line.substr(close + 2);
}

std::string withoutComments(std::string_view text) {
    std::string kept;
    kept.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto end = endOfLine(text, at);
        appendWithoutComment(kept, text.substr(at, end - at));
        if (end < text.size()) {
            kept += text[end];  // the other bytes of a long one go with the next line
        }
        at = end + 1;
    }
    return kept;
}

constexpr CharacterSet selectorEnds("{,");
constexpr CharacterSet nameEnds(":");
constexpr CharacterSet valueEnds(";\n}");

Selector::Kind scanKind(Scanner& scanner) {
    if (scanner.scanString(".")) {
        return Selector::Kind::className;
    }
    return scanner.scanString("#") ? Selector::Kind::id : Selector::Kind::element;
}

// Empty at the end of the sheet.
std::vector<Selector> scanSelectors(Scanner& scanner) {
    std::vector<Selector> selectors;
    for (;;) {
        const auto kind = scanKind(scanner);
        const auto name = scanner.scanUpTo(selectorEnds);
        if (!name) {
            return selectors;
        }
        requireRoom(selectors.size(), limits::selectors, "selectors in style sheets");
        selectors.push_back({kind, std::string(trimmed(*name))});
        scanner.scanString(",");
    }
}

Declarations scanDeclarations(Scanner& scanner) {
    Declarations declarations;
    scanner.scanString("{");
    while (!scanner.scanString("}")) {
        const auto name = scanner.scanUpTo(nameEnds);
        if (!name || !scanner.scanString(":")) {
            throw XMLParserError::invalid();
        }
        const auto value = scanner.scanUpTo(valueEnds);
        scanner.scanString(";");
        if (const auto field = presentationAttributeIndex(trimmed(*name))) {
            declarations[*field] = trimmed(value.value_or(std::string_view()));
        }
    }
    return declarations;
}

std::size_t bytesIn(const Declarations& declarations) {
    std::size_t bytes = 0;
    for (const auto& text : declarations) {
        bytes += text ? text->size() : 0;
    }
    return bytes;
}

void extend(Declarations& declarations, const Declarations& later) {
    for (std::size_t field = 0; field < later.size(); ++field) {
        if (later[field]) {
            declarations[field] = later[field];
        }
    }
}

dom::PresentationAttributes parsed(const Declarations& declarations) {
    std::vector<xml::Attribute> attributes;
    for (std::size_t field = 0; field < declarations.size(); ++field) {
        if (declarations[field]) {
            attributes.push_back({presentationAttributeName(field), *declarations[field]});
        }
    }
    return parsePresentationAttributes(attributes, {}, noOptions);
}

}  // namespace

void StyleSheetParser::count(std::size_t bytes, std::size_t selectors) {
    bytes_ += bytes;
    selectors_ += selectors;
    if (bytes_ > limits::styleSheetBytes || selectors_ > limits::selectors) {
        throw XMLParserError::other("the style sheets are too large");
    }
}

dom::StyleSheet StyleSheetParser::parse(std::string_view text) {
    count(text.size(), 0);
    const auto source = withoutComments(text);
    Scanner scanner(source);
    std::map<Selector, Declarations> rules;
    for (auto selectors = scanSelectors(scanner); !selectors.empty(); selectors = scanSelectors(scanner)) {
        const auto declarations = scanDeclarations(scanner);
        // A text is read again for every selector that it goes to.
        count(bytesIn(declarations) * selectors.size(), selectors.size());
        for (auto& selector : selectors) {
            extend(rules[std::move(selector)], declarations);
        }
    }
    dom::StyleSheet sheet;
    for (const auto& [selector, declarations] : rules) {
        sheet.attributes.emplace_hint(sheet.attributes.end(), selector, parsed(declarations));
    }
    return sheet;
}

}  // namespace sorvik::draw
