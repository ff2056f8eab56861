#include "sorvikdraw/dom/parsing_log.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "sorvikdraw/dom/printable_text.h"
#include "sorvikdraw/dom/xml_parser_error.h"

namespace sorvik::draw {
namespace {

TEST(ParsingLog, NamesFileElementPlaceAndError) {
    xml::Element element;
    element.name = "style";
    element.parsedLocation = SourceLocation{3, 4};
    xml::Element unplaced;
    unplaced.name = "g";
    xml::Element withoutColumn = unplaced;
    withoutColumn.parsedLocation = SourceLocation{7, std::nullopt};
    const auto missing = XMLParserError::missingAttribute("width");
    const auto broken = XMLParserError::invalidDocument("mismatched tag", "rect", {5, 6});
    const auto empty = XMLParserError::invalidDocument("no element found", std::nullopt, {1, 1});
    const XMLParserError wrongElement(XMLParserError::Kind::invalidElement, "path", "why");
    const std::runtime_error other("something else");
    const struct {
        const std::exception& error;
        std::string file;
        const xml::Element* element;
        std::string line;
    } rows[] = {
        {missing, "a.svg", nullptr, "[parsing error] a.svg  error: missing attribute \"width\""},
        {missing, "", nullptr, "[parsing error]   error: missing attribute \"width\""},
        {missing, "a.svg", &element,
         "[parsing error] a.svg <style> line: 3 column: 4 error: missing attribute \"width\""},
        {missing, "a.svg", &unplaced, "[parsing error] a.svg <g> error: missing attribute \"width\""},
        {missing, "", &withoutColumn, "[parsing error]  <g> line: 7 column: -1 error: missing attribute \"width\""},
        // These know their place themselves.
        {broken, "a.svg", &element,
         "[parsing error] a.svg <rect> line: 5 column: 6 error: invalid document: mismatched tag"},
        {empty, "a.svg", nullptr, "[parsing error] a.svg  line: 1 column: 1 error: invalid document: no element found"},
        {wrongElement, "a.svg", nullptr, "[parsing error] a.svg <path> error: invalid element \"path\": why"},
        {other, "a.svg", nullptr, "[parsing error] a.svg  error: something else"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(parsingErrorLine(row.error, row.file, row.element), row.line);
    }
}

TEST(ParsingLog, IsOneLineOfPrintableText) {
    const auto error = XMLParserError::invalidAttribute("fi\nll", "\x1b[31m" + std::string(1'000'000, 'x') + "\xFF");
    const std::string line = parsingErrorLine(error, "a\nb\xC3.svg", nullptr);
    EXPECT_EQ(line.substr(0, 86),
              "[parsing error] a\\u{a}b\uFFFD.svg  error: invalid attribute \"fi\\u{a}ll\": \"\\u{1b}[31mxxxxx");
    EXPECT_LT(line.size(), 400U);
    ::testing::internal::CaptureStderr();
    logParsingError(error, "a.svg");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), parsingErrorLine(error, "a.svg", nullptr) + "\n");
}

TEST(PrintableText, KeepsUTF8AndReplacesTheRest) {
    const struct {
        std::string text, printed;
    } rows[] = {
        {"plain, ä € 😀", "plain, ä € 😀"},
        {"\t\r\x7F\xC2\x85", "\\u{9}\\u{d}\\u{7f}\\u{85}"},
        {"\u202Eback\u2028line", "\\u{202e}back\\u{2028}line"},
        {"\x80\xC3|\xE2\x82|\xF0\x9F\x98", "\uFFFD\uFFFD|\uFFFD\uFFFD|\uFFFD\uFFFD\uFFFD"},
        {"\xC0\xAF", "\uFFFD\uFFFD"},                      // longer than it need be
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},            // half of a surrogate pair
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond Unicode
        {std::string("a\0b", 3), "a\\u{0}b"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(printable(row.text), row.printed);
    }
    EXPECT_EQ(printable("äöüß", 3), "äöü…");
    EXPECT_EQ(printable("äöü", 3), "äöü");
}

}  // namespace
}  // namespace sorvik::draw
