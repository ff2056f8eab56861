// Much text, many fonts, many rules.

#include "hostile_file.h"

namespace sorvik::draw::test {
namespace {

std::string text(std::string_view attributes, const std::string& content) {
    return "<text " + std::string(attributes) + ">" + content + "</text>";
}

constexpr std::string_view font = R"(font-family="DejaVu Sans" y="20" )";

std::string megabyte() { return document(text(font, repeated("Wort ", 200'000))); }
std::string megabyteWithoutBlanks() { return document(text(font, repeated("m", 1'000'000))); }
std::string combiningMarks() { return document(text(font, "a" + repeated("\xCC\x81", 100'000))); }
std::string directions() {
    return document(text(font, repeated("\xE2\x80\xAE\xD7\x90"
                                        "a",
                                        50'000)));
}
std::string manyTexts() { return document(repeated(text(font, "Some words"), 10'000)); }
std::string manyDifferentTexts() {
    return document(joined(10'000, [](std::size_t i) { return text(font, "Word " + std::to_string(i)); }));
}
std::string manyFamilies() {
    return document(joined(300, [](std::size_t i) {
        return text(R"(y="20" font-family="Family )" + std::to_string(i) + R"(")", "Word");
    }));
}
std::string longFamily() { return document(text(R"(font-family=")" + repeated("Name,", 200'000) + R"(")", "Word")); }
std::string oddFamily() { return document(text(R"(font-family="../../etc/passwd%n&#9;&quot;\: 12 bold")", "Word")); }
std::string emptyFamily() { return document(text(R"(font-family="")", "Word")); }
std::string manySizes() {
    return document(joined(
        5'000, [](std::size_t i) { return text(R"(y="20" font-size=")" + std::to_string(i) + R"(")", "Word"); }));
}
template <const auto& size>
std::string sized() {
    return document(text(R"(y="20" font-size=")" + std::string(size) + R"(")", "Word"));
}
constexpr char million[] = "1e6";
constexpr char huge[] = "1e30";
constexpr char tiny[] = "1e-30";
constexpr char zero[] = "0";
constexpr char negative[] = "-12";

std::string scripts() {
    return document(text(font,
                         "\xE0\xA4\x95\xE0\xA5\x8D\xE0\xA4\xB7 \xD8\xA7\xD9\x84\xD8\xB9 \xE6\xBC\xA2 "
                         "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9 \xF4\x8F\xBF\xBF \xE2\x80\xA8"));
}
std::string textOfElements() { return document("<text>" + repeated("<tspan>a</tspan>b", 100'000) + "</text>"); }

constexpr std::array texts = {
    HostileFile{"Megabyte", End::either, megabyte},
    HostileFile{"MegabyteWithoutBlanks", End::either, megabyteWithoutBlanks},
    HostileFile{"CombiningMarks", End::either, combiningMarks},
    HostileFile{"Directions", End::either, directions},
    HostileFile{"Texts10000", End::drawn, manyTexts},
    HostileFile{"DifferentTexts10000", End::either, manyDifferentTexts},
    HostileFile{"Families300", End::either, manyFamilies},
    HostileFile{"LongFamily", End::either, longFamily},
    HostileFile{"OddFamily", End::drawn, oddFamily},
    HostileFile{"EmptyFamily", End::drawn, emptyFamily},
    HostileFile{"Sizes5000", End::either, manySizes},
    HostileFile{"SizeOfAMillion", End::either, sized<million>},
    HostileFile{"HugeSize", End::either, sized<huge>},
    HostileFile{"TinySize", End::drawn, sized<tiny>},
    HostileFile{"SizeZero", End::drawn, sized<zero>},
    HostileFile{"NegativeSize", End::either, sized<negative>},
    HostileFile{"Scripts", End::drawn, scripts},
    HostileFile{"OfElements", End::either, textOfElements},
};
INSTANTIATE_TEST_SUITE_P(Texts, HostileFiles, testing::ValuesIn(texts), nameOf);

std::string sheet(const std::string& rules, const std::string& body) {
    return document("<style>" + rules + "</style>" + body);
}

std::string classesOfOneElement() {
    return sheet(".c5{fill:red}", R"(<rect width="9" height="9" class=")" + joined(100'000, [](std::size_t i) {
                                      return "c" + std::to_string(i) + " ";
                                  }) + R"("/>)");
}
std::string classesOfManyElements() {
    const std::string classes = joined(1'000, [](std::size_t i) { return "c" + std::to_string(i) + " "; });
    return sheet(".c5{fill:red}", repeated(R"(<rect width="9" height="9" class=")" + classes + R"("/>)", 5'000));
}
std::string rulesAndElements() {
    return sheet(
        joined(10'000, [](std::size_t i) { return ".c" + std::to_string(i) + "{fill:red;stroke:blue;opacity:1}"; }),
        joined(10'000,
               [](std::size_t i) { return R"(<rect width="9" height="9" class="c)" + std::to_string(i) + R"("/>)"; }));
}
std::string selectorsOfOneRule() {
    return sheet(joined(200'000, [](std::size_t i) { return ".c" + std::to_string(i) + ","; }) + ".z{fill:red}",
                 "<g/>");
}
std::string sheets() {
    return document(repeated("<style>rect{fill:red}</style>", 50'000) +
                    repeated(R"(<rect width="9" height="9"/>)", 1'000));
}
std::string rulesOfOneSelector() { return sheet(repeated("rect{fill:red}", 300'000), "<g/>"); }
std::string declarations() { return sheet("g{" + repeated("unknown:1;", 500'000) + "}", "<g/>"); }
std::string differentDeclarations() {
    return sheet("g{" + joined(200'000, [](std::size_t i) { return "p" + std::to_string(i) + ":1;"; }) + "}", "<g/>");
}
std::string openComment() { return sheet(repeated("/* ", 500'000), "<g/>"); }
std::string comments() { return sheet(repeated("/**/ g{fill:red}\n", 200'000), "<g/>"); }
std::string openRule() { return sheet("rect{fill:red", "<g/>"); }
std::string openRules() { return sheet(repeated("{", 1'000'000), "<g/>"); }
std::string commas() { return sheet(repeated(",", 1'000'000) + "{}", "<g/>"); }
std::string longInlineStyle() { return document(R"(<g style=")" + repeated("fill:red;", 1'000'000) + R"("/>)"); }
std::string inlineStyleWithoutColon() { return document(R"(<g style="fill"/>)"); }

constexpr std::array styles = {
    HostileFile{"Classes100000OfOneElement", End::drawn, classesOfOneElement},
    HostileFile{"ClassesOfManyElements", End::either, classesOfManyElements},
    HostileFile{"Rules10000OnElements10000", End::drawn, rulesAndElements},
    HostileFile{"Selectors200000OfOneRule", End::either, selectorsOfOneRule},
    HostileFile{"Sheets50000", End::either, sheets},
    HostileFile{"Rules300000OfOneSelector", End::drawn, rulesOfOneSelector},
    HostileFile{"Declarations500000", End::drawn, declarations},
    HostileFile{"DifferentDeclarations200000", End::drawn, differentDeclarations},
    HostileFile{"OpenComment", End::drawn, openComment},
    HostileFile{"Comments200000", End::drawn, comments},
    HostileFile{"OpenRule", End::drawn, openRule},
    HostileFile{"OpenRules", End::drawn, openRules},
    HostileFile{"Commas", End::drawn, commas},
    HostileFile{"LongInline", End::either, longInlineStyle},
    HostileFile{"InlineWithoutColon", End::refused, inlineStyleWithoutColon},
};
INSTANTIATE_TEST_SUITE_P(Styles, HostileFiles, testing::ValuesIn(styles), nameOf);

}  // namespace
}  // namespace sorvik::draw::test
