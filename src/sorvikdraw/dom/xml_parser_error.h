#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>

namespace sorvik::draw {

/// Where in a file, counted from one.
struct SourceLocation {
    int line = 0;
    std::optional<int> column;
    bool operator==(const SourceLocation&) const = default;
};

/// Why a document, an element or an attribute could not be read.
class XMLParserError : public std::exception {
public:
    enum class Kind : std::uint8_t {
        missingAttribute,
        invalidAttribute,
        invalidElement,   ///< names the element and the place
        invalidDocument,  ///< not well formed, or beyond a limit; names the place
        invalid,
        other,  ///< `reason` alone says it
    };

    explicit XMLParserError(Kind kind, std::string name = {}, std::string reason = {});
    static XMLParserError missingAttribute(std::string name);
    static XMLParserError invalidAttribute(std::string name, std::string value);
    static XMLParserError invalidDocument(std::string reason, std::optional<std::string> element, SourceLocation where);
    static XMLParserError invalid();
    static XMLParserError other(std::string reason);
    /// The same, its line naming the element that it happened in.
    [[nodiscard]] XMLParserError within(std::string element, std::optional<SourceLocation> where) const;

    [[nodiscard]] Kind kind() const { return kind_; }
    [[nodiscard]] const std::string& name() const { return name_; }      ///< of the attribute or the element
    [[nodiscard]] const std::string& reason() const { return reason_; }  ///< an attribute's value, or a sentence
    [[nodiscard]] const std::optional<std::string>& element() const { return element_; }
    [[nodiscard]] const std::optional<SourceLocation>& location() const { return location_; }
    /// A line for people: printable, UTF-8, long values cut.
    [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

private:
    Kind kind_;
    std::string name_;
    std::string reason_;
    std::optional<std::string> element_;
    std::optional<SourceLocation> location_;
    std::string description_;
};

}  // namespace sorvik::draw
