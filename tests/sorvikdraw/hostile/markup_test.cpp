// Files that are hardly XML, or too much of it.

#include "hostile_file.h"

namespace sorvik::draw::test {
namespace {

using namespace std::string_literals;

std::string withDocumentType(const std::string& declarations, const std::string& body) {
    return "<?xml version=\"1.0\"?><!DOCTYPE svg [" + declarations + "]>" + document(body);
}

std::string billionLaughs() {
    std::string entities = R"(<!ENTITY a0 "ha">)";
    for (char i = '1'; i <= '9'; ++i) {
        const std::string before = std::string("&a") + static_cast<char>(i - 1) + ";";
        entities += std::string("<!ENTITY a") + i + " \"" + repeated(before, 10) + "\">";
    }
    return withDocumentType(entities, "<text>&a9;</text>");
}
std::string quadraticBlowUp() {
    return withDocumentType("<!ENTITY a \"" + repeated("a", 100'000) + "\">",
                            "<text>" + repeated("&a;", 100'000) + "</text>");
}
std::string entityInAttributes() {
    return withDocumentType("<!ENTITY a \"" + repeated("l1 1", 20'000) + "\">",
                            R"(<path d="M0 0)" + repeated("&a;", 1'000) + R"("/>)");
}
std::string elementsOfEntities() {
    return withDocumentType(R"(<!ENTITY a "<g/><g/><g/><g/><g/><g/><g/><g/><g/><g/>">)"
                            R"(<!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;">)",
                            repeated("&b;", 30'000));
}
std::string entityOfItself() { return withDocumentType(R"(<!ENTITY a "&a;">)", "<text>&a;</text>"); }
std::string externalEntity() {
    return withDocumentType(R"(<!ENTITY a SYSTEM "file:///etc/passwd">)", "<text>&a;</text>");
}
std::string externalParameterEntity() {
    return withDocumentType(R"(<!ENTITY % a SYSTEM "file:///dev/zero"> %a;)", "<g/>");
}
std::string externalSubset() {
    return R"(<?xml version="1.0"?><!DOCTYPE svg SYSTEM "file:///dev/zero">)" + document("<g/>");
}
std::string unknownEntity() { return document("<text>&nbsp;</text>"); }
std::string ownEntity() {
    return withDocumentType(R"(<!ENTITY red "#f00">)", R"(<rect width="9" height="9" fill="&red;"/>)");
}

constexpr std::array entities = {
    HostileFile{"BillionLaughs", End::refused, billionLaughs},
    HostileFile{"QuadraticBlowUp", End::refused, quadraticBlowUp},
    HostileFile{"InAttributes", End::refused, entityInAttributes},
    HostileFile{"OfElements", End::either, elementsOfEntities},
    HostileFile{"OfItself", End::refused, entityOfItself},
    HostileFile{"External", End::either, externalEntity},
    HostileFile{"ExternalParameter", End::either, externalParameterEntity},
    HostileFile{"ExternalSubset", End::drawn, externalSubset},
    HostileFile{"Unknown", End::refused, unknownEntity},
    HostileFile{"Own", End::drawn, ownEntity},
};
INSTANTIATE_TEST_SUITE_P(Entities, HostileFiles, testing::ValuesIn(entities), nameOf);

std::string utf16(bool bigEndian) {
    std::string wide = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : R"(<?xml version="1.0" encoding="UTF-16"?>)" + document("<g/>")) {
        wide += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    }
    return wide;
}
std::string littleEndian() { return utf16(false); }
std::string bigEndian() { return utf16(true); }
std::string cutUTF16() { return utf16(true).substr(0, 101); }
std::string invalidUTF8() { return document("<text>\xC3\x28\xF8\x88</text>"); }
std::string invalidUTF8InAName() { return document("<g\xFF/>"); }
std::string surrogatesAsUTF8() { return document("<text>\xED\xA0\x80</text>"); }
std::string latin1() { return R"(<?xml version="1.0" encoding="ISO-8859-1"?>)" + document("<text>\xE4\xFF</text>"); }
std::string unknownEncoding() { return R"(<?xml version="1.0" encoding="KLINGON-8"?>)" + document("<g/>"); }
std::string falseEncoding() { return R"(<?xml version="1.0" encoding="UTF-16"?>)" + document("<g/>"); }
std::string byteOrderMark() { return "\xEF\xBB\xBF" + document("<g/>"); }
std::string nulInText() { return document("<text>a\0b</text>"s); }
std::string nulBehind() { return document("<g/>") + std::string(1'000, '\0'); }
std::string nulByReference() { return document("<text>&#0;</text>"); }
std::string onlyNul() { return std::string(1'000'000, '\0'); }

constexpr std::array encodings = {
    HostileFile{"LittleEndian", End::drawn, littleEndian},
    HostileFile{"BigEndian", End::drawn, bigEndian},
    HostileFile{"CutUTF16", End::refused, cutUTF16},
    HostileFile{"InvalidUTF8", End::refused, invalidUTF8},
    HostileFile{"InvalidUTF8InAName", End::refused, invalidUTF8InAName},
    HostileFile{"SurrogatesAsUTF8", End::refused, surrogatesAsUTF8},
    HostileFile{"Latin1", End::drawn, latin1},
    HostileFile{"Unknown", End::refused, unknownEncoding},
    HostileFile{"False", End::refused, falseEncoding},
    HostileFile{"ByteOrderMark", End::drawn, byteOrderMark},
    HostileFile{"NulInText", End::refused, nulInText},
    HostileFile{"NulBehind", End::either, nulBehind},
    HostileFile{"NulByReference", End::refused, nulByReference},
    HostileFile{"OnlyNul", End::refused, onlyNul},
};
INSTANTIATE_TEST_SUITE_P(Encodings, HostileFiles, testing::ValuesIn(encodings), nameOf);

std::string empty() { return ""; }
std::string blank() { return " \n\t "; }
std::string noRoot() { return "<?xml version=\"1.0\"?><!-- nothing -->"; }
std::string foreignRoot() { return R"(<svg xmlns="urn:foreign" width="9" height="9"/>)"; }
std::string html() { return "<!DOCTYPE html><html><head><meta charset=utf-8><title>404</title></head></html>"; }
std::string plainText() { return "Dear Sir or Madam"; }
std::string gzip() { return "\x1F\x8B\x08\0\0\0\0\0\0\x03"s + repeated("\x03\xFF\0x"s, 1'000); }
std::string png() { return "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\b\6\0\0\0"s; }
std::string pdf() { return "%PDF-1.4\n1 0 obj"; }
std::string cut() { return document("<g/>").substr(0, 120); }
std::string cutInATag() { return R"(<svg xmlns="http://www.w3.org/2000/svg" width="1)"; }
std::string crossedTags() { return document("<g><a></g></a>"); }
std::string twoRoots() { return document("<g/>") + document("<g/>"); }
std::string textBehind() { return document("<g/>") + "trailing"; }
std::string sameAttributeTwice() { return document(R"(<rect width="9" height="9" width="8"/>)"); }
std::string unboundPrefix() { return document("<x:g/>"); }
std::string controlCharacters() { return document("<text>\x1B[2J\x07</text>"); }
std::string oddNames() { return document("<\xE2\x80\xAE/><g \xC3\xA4=\"1\"/>"); }
std::string controlCharactersInAValue() {
    return document(R"(<rect width="&#10;[parsing error] forged&#x9B;31m&#x202E;" height="5"/>)");
}
std::string longName() { return document("<" + repeated("n", 5'000'000) + "/>"); }
std::string longAttribute() { return document(R"(<g id=")" + repeated("n", 20'000'000) + R"("/>)"); }
std::string longBadAttribute() {
    return document(R"(<rect height="5" width=")" + repeated("n", 20'000'000) + R"("/>)");
}
std::string longComment() { return document("<!--" + repeated("n", 50'000'000) + "-->"); }
std::string manyInstructions() { return document(repeated("<?a b?>", 2'000'000)); }
std::string manyNamespaces() {
    return document(
        joined(50'000, [](std::size_t i) { return R"(<g xmlns:n)" + std::to_string(i) + R"(="urn:n"/>)"; }));
}
std::string namespacesInsideEachOther() {
    return document(joined(1'000, [](std::size_t i) { return R"(<g xmlns:n)" + std::to_string(i) + R"(="urn:n">)"; }) +
                    repeated("</g>", 1'000));
}

constexpr std::array files = {
    HostileFile{"Empty", End::refused, empty},
    HostileFile{"Blank", End::refused, blank},
    HostileFile{"NoRoot", End::refused, noRoot},
    HostileFile{"ForeignRoot", End::refused, foreignRoot},
    HostileFile{"HTML", End::refused, html},
    HostileFile{"PlainText", End::refused, plainText},
    HostileFile{"Gzip", End::refused, gzip},
    HostileFile{"PNG", End::refused, png},
    HostileFile{"PDF", End::refused, pdf},
    HostileFile{"Cut", End::refused, cut},
    HostileFile{"CutInATag", End::refused, cutInATag},
    HostileFile{"CrossedTags", End::refused, crossedTags},
    HostileFile{"TwoRoots", End::refused, twoRoots},
    HostileFile{"TextBehind", End::refused, textBehind},
    HostileFile{"SameAttributeTwice", End::refused, sameAttributeTwice},
    HostileFile{"UnboundPrefix", End::either, unboundPrefix},
    HostileFile{"ControlCharacters", End::refused, controlCharacters},
    HostileFile{"ControlCharactersInAValue", End::refused, controlCharactersInAValue},
    HostileFile{"OddNames", End::refused, oddNames},
    HostileFile{"LongName", End::either, longName},
    HostileFile{"LongAttribute", End::either, longAttribute},
    HostileFile{"LongBadAttribute", End::refused, longBadAttribute},
    HostileFile{"LongComment", End::drawn, longComment},
    HostileFile{"ManyInstructions", End::drawn, manyInstructions},
    HostileFile{"ManyNamespaces", End::either, manyNamespaces},
    HostileFile{"NamespacesInsideEachOther", End::drawn, namespacesInsideEachOther},
};
INSTANTIATE_TEST_SUITE_P(Files, HostileFiles, testing::ValuesIn(files), nameOf);

}  // namespace
}  // namespace sorvik::draw::test
