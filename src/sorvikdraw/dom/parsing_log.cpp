#include "sorvikdraw/dom/parsing_log.h"

#include <unistd.h>

#include <cerrno>
#include <optional>

#include "sorvikdraw/dom/printable_text.h"
#include "sorvikdraw/dom/xml_parser_error.h"

namespace sorvik::draw {
namespace {

struct Place {
    std::optional<std::string> element;
    std::optional<SourceLocation> location;
};

bool knowsItsPlace(const XMLParserError& error) {
    return error.kind() == XMLParserError::Kind::invalidElement ||
           error.kind() == XMLParserError::Kind::invalidDocument;
}

Place placeOf(const std::exception& error, const xml::Element* element) {
    const auto* parserError = dynamic_cast<const XMLParserError*>(&error);
    if (parserError != nullptr && knowsItsPlace(*parserError)) {
        const bool isElement = parserError->kind() == XMLParserError::Kind::invalidElement;
        return {isElement ? parserError->name() : parserError->element(), parserError->location()};
    }
    return element != nullptr ? Place{std::string(element->name), element->parsedLocation} : Place{};
}

}  // namespace

void StandardErrorStream::write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
        if (written > 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return;
        }
    }
}

std::string parsingErrorLine(const std::exception& error, std::string_view filename, const xml::Element* element) {
    const Place place = placeOf(error, element);
    std::string line = "[parsing error] " + printable(filename) + " ";
    if (place.element) {
        line += "<" + printable(*place.element) + ">";
    }
    if (place.location) {
        line += " line: " + std::to_string(place.location->line) +
                " column: " + std::to_string(place.location->column.value_or(-1));
    }
    return line + " error: " + printable(error.what(), 1000);
}

void logParsingError(const std::exception& error, std::string_view filename, const xml::Element* element) {
    StandardErrorStream::write(parsingErrorLine(error, filename, element) + "\n");
}

}  // namespace sorvik::draw
