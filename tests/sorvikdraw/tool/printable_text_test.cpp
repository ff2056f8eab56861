// What reaches a terminal or a log is one line of UTF-8.

#include "sorvikdraw/tool/printable_text.h"

#include <gtest/gtest.h>

namespace sorvik::draw::command_line {
namespace {

TEST(Printable, EscapesWhatDrivesATerminalOrIsNoUTF8) {
    const struct {
        std::string_view text, line;
    } rows[] = {
        {"a b~", "a b~"},
        {"a\nb\x1b[1m\x7f", "a\\x0ab\\x1b[1m\\x7f"},
        {"gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x96\xBC", "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x96\xBC"},
        {"\xC2\x9B", "\\xc2\\x9b"},                    // a control character in two bytes
        {"\xFF\xC3", "\\xff\\xc3"},                    // not in use, and cut off
        {"\xC0\xAF", "\\xc0\\xaf"},                    // overlong
        {"\xE0\x80\xAF", "\\xe0\\x80\\xaf"},           // overlong
        {"\xED\xA0\x80", "\\xed\\xa0\\x80"},           // half a pair
        {"\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},  // beyond the last
        {"\xE2\x82z", "\\xe2\\x82z"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(printable(row.text), row.line);
    }
}

TEST(Printable, LeavesTheMiddleOfALongTextOut) {
    std::string text = "head";
    for (int i = 0; i < 2000; ++i) {
        text += "\xE2\x82\xAC";
    }
    const std::string line = printable(text + "tail");
    EXPECT_LE(line.size(), 1000U);
    EXPECT_TRUE(line.starts_with("head\xE2\x82\xAC"));
    EXPECT_TRUE(line.ends_with("\xE2\x82\xACtail"));
    EXPECT_EQ(printable(line), line) << "no character was cut in two";
}

}  // namespace
}  // namespace sorvik::draw::command_line
