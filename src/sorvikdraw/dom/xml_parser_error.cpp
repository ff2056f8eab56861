#include "sorvikdraw/dom/xml_parser_error.h"

#include <utility>

#include "sorvikdraw/dom/printable_text.h"

namespace sorvik::draw {
namespace {

std::string quoted(const std::string& text) { return "\"" + printable(text) + "\""; }

std::string withReason(std::string sentence, const std::string& reason) {
    return reason.empty() ? sentence : std::move(sentence) + ": " + printable(reason);
}

std::string describe(XMLParserError::Kind kind, const std::string& name, const std::string& reason) {
    using Kind = XMLParserError::Kind;
    switch (kind) {
        case Kind::missingAttribute:
            return "missing attribute " + quoted(name);
        case Kind::invalidAttribute:
            return "invalid attribute " + quoted(name) + ": " + quoted(reason);
        case Kind::invalidElement:
            return withReason("invalid element " + quoted(name), reason);
        case Kind::invalidDocument:
            return withReason("invalid document", reason);
        case Kind::invalid:
            return withReason(name.empty() ? "invalid" : "invalid " + quoted(name), reason);
        case Kind::other:
            break;
    }
    return printable(reason, 1000);
}

std::string describe(const SourceLocation& where) {
    const std::string line = "line " + std::to_string(where.line);
    return where.column ? line + ", column " + std::to_string(*where.column) : line;
}

}  // namespace

XMLParserError::XMLParserError(Kind kind, std::string name, std::string reason)
    : kind_(kind), name_(std::move(name)), reason_(std::move(reason)), description_(describe(kind_, name_, reason_)) {}

XMLParserError XMLParserError::missingAttribute(std::string name) {
    return XMLParserError(Kind::missingAttribute, std::move(name));
}

XMLParserError XMLParserError::invalidAttribute(std::string name, std::string value) {
    return XMLParserError(Kind::invalidAttribute, std::move(name), std::move(value));
}

XMLParserError XMLParserError::invalidDocument(std::string reason, std::optional<std::string> element,
                                               SourceLocation where) {
    XMLParserError error(Kind::invalidDocument, {}, std::move(reason));
    error.element_ = std::move(element);
    error.location_ = where;
    return error;
}

XMLParserError XMLParserError::invalid() { return XMLParserError(Kind::invalid); }

XMLParserError XMLParserError::other(std::string reason) { return XMLParserError(Kind::other, {}, std::move(reason)); }

XMLParserError XMLParserError::within(std::string element, std::optional<SourceLocation> where) const {
    XMLParserError error = *this;
    error.description_ += " in <" + printable(element) + ">";
    if (where) {
        error.description_ += " at " + describe(*where);
    }
    error.element_ = std::move(element);
    error.location_ = where;
    return error;
}

}  // namespace sorvik::draw
