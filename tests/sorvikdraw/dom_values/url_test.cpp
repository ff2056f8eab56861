#include "sorvikdraw/dom/url.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sorvikdraw/dom/value_parser.h"

namespace sorvik::draw::testing {
namespace {

using dom::URL;
using ::testing::ElementsAre;

TEST(Url, IsWhatMayStandInADocument) {
    for (const auto* const text : {"#a", "a.svg", "a.svg#b-c_d.1", "https://example.org/a?b=c&d#e", "#%20", "#\xC3\xA4",
                                   "../a(1).png", "urn:x:y", "a/b:c", "?q:1", "[0]"}) {
        EXPECT_EQ(ValueParser::parseUrl(text), URL{text}) << text;
    }
    for (const auto* const text :
         {"",    " ",   "#a b", " #a", "#a\n", "a\x01", "a\x7F", "#a#b",  "#\"a\"", "<a>", "a\\b",
          "{a}", "a|b", "a^b",  "`a`", "%",    "%2",    "%zz",   "#100%", ":a",     "1a:b"}) {
        EXPECT_EQ(ValueParser::parseUrl(text), std::nullopt) << text;
    }
}

TEST(Url, LosesBlanksOnlyWhereItHoldsData) {
    EXPECT_EQ(dom::makeURL("data:image/png;base64,\n\t AA AA\n"), URL{"data:image/png;base64,AAAA"});
    EXPECT_EQ(dom::makeURL(" data:,"), std::nullopt);
    EXPECT_EQ(dom::makeURL("data:\r"), std::nullopt);
}

TEST(Url, NamesAnElementByItsFragment) {
    EXPECT_EQ((URL{"a#b%20c"}).fragment(), "b%20c");
    EXPECT_EQ((URL{"a#"}).fragment(), "");
    EXPECT_EQ((URL{"a"}).fragment(), std::nullopt);
}

TEST(Url, SelectorsAreWhole) {
    EXPECT_EQ(ValueParser::parseUrlSelector("url(#a)"), URL{"#a"});
    EXPECT_EQ(ValueParser::parseUrlSelector(" url( \t#a ) \n"), URL{"#a"});
    for (const auto* const text : {"", "none", "#a", "url(#a", "url()", "url(  )", "url(#a) x", "url(#a))", "url(a b)",
                                   "url('#a b')", "url (#a)", "URL(#a)"}) {
        EXPECT_EQ(ValueParser::parseUrlSelector(text), std::nullopt) << text;
    }
}

struct Payload {
    std::string_view base64;
    std::vector<int> bytes;
};

TEST(UrlData, DecodesStandardBase64) {
    const auto payloads = std::to_array<Payload>({
        {"AAEC", {0, 1, 2}},
        {"/+8=", {0xFF, 0xEF}},
        {"gA==", {0x80}},
        {"MDEyMzQ1Njc4OQ==", {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9'}},
    });
    for (const auto& [base64, bytes] : payloads) {
        const URL url{"data:image/png;base64," + std::string(base64)};
        const auto data = dom::urlData(url);
        ASSERT_TRUE(data) << base64;
        EXPECT_EQ(data->mimeType, "image/png");
        std::vector<int> decoded;
        for (const auto byte : data->bytes) {
            decoded.push_back(std::to_integer<int>(byte));
        }
        EXPECT_EQ(decoded, bytes) << base64;
    }
}

TEST(UrlData, IsAbsentUnlessAllPartsAreThere) {
    for (const auto* const text : {"",
                                   "data:",
                                   "data:image/png",
                                   "data:image/png;base64",
                                   "data:image/png;base64,",
                                   "data:;base64,AAAA",
                                   "data:image/png,AAAA",
                                   "data:image/png;charset=x;base64,AAAA",
                                   "xdata:image/png;base64,AAAA",
                                   "#a;base64,AAAA",
                                   "data:image/png;base64,A",
                                   "data:image/png;base64,AA",
                                   "data:image/png;base64,AAA",
                                   "data:image/png;base64,A===",
                                   "data:image/png;base64,====",
                                   "data:image/png;base64,==AA",
                                   "data:image/png;base64,AA=A",
                                   "data:image/png;base64,AA==AAAA",
                                   "data:image/png;base64,AA-_",
                                   "data:image/png;base64,AA%3D",
                                   "data:image/png;base64,AA\xC3\xA4"}) {
        EXPECT_FALSE(dom::urlData(URL{text})) << text;
    }
}

}  // namespace
}  // namespace sorvik::draw::testing
