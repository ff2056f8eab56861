#include "sorvikdraw/dom/sax_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "dom_testing.h"
#include "sorvikdraw/dom/limits.h"

namespace sorvik::draw::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;
using xml::SAXParser;

const std::string start = R"(<svg xmlns="http://www.w3.org/2000/svg">)";

// A tree as text: names, attributes in brackets, inner text in quotes, children in braces. Only for shallow ones.
std::string written(const xml::Element& element) {
    std::string text(element.name);
    for (const auto& [name, value] : element.attributes) {
        text += "[" + std::string(name) + "=" + std::string(value) + "]";
    }
    if (element.innerText) {
        text += "'" + std::string(*element.innerText) + "'";
    }
    std::string children;
    for (const xml::Element* child = element.firstChild; child != nullptr; child = child->nextSibling) {
        children += (children.empty() ? "" : " ") + written(*child);
    }
    return children.empty() ? text : text + "{" + children + "}";
}

std::string tree(std::string_view document) { return written(*SAXParser::parse(document)->root); }

XMLParserError parsingError(const std::string& document) {
    return errorOf([&] { static_cast<void>(SAXParser::parse(document)); });
}

TEST(SAXParser, BuildsTheTree) {
    const struct {
        std::string document, tree;
    } rows[] = {
        {"<a/>", "a"},
        {"<a><b/><c><d/></c><e/></a>", "a{b c{d} e}"},
        {"<a x='1' y='&lt;&#65;&quot;'/>", "a[x=1][y=<A\"]"},
        {"<a>one<b>two</b>three<b/> four</a>", "a'onethree four'{b'two' b}"},
        {"<a><![CDATA[<b>]]>&amp;</a>", "a'<b>&'"},
        {"<!DOCTYPE a [<!ENTITY e \"<b>text</b>\">]><a>&e;&e;</a>", "a{b'text' b'text'}"},
        {"<!DOCTYPE a [<!ATTLIST a x CDATA \"by default\">]><a/>", "a[x=by default]"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4</a>", "a'ä'"},
        {std::string("\xFF\xFE<\0a\0/\0>\0", 10), "a"},
        {"\xEF\xBB\xBF<a/>", "a"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(tree(row.document), row.tree) << row.document;
    }
}

TEST(SAXParser, KeepsElementsOfSVGAndOfNoNamespace) {
    const struct {
        std::string document, tree;
    } rows[] = {
        {start + "<g/></svg>", "svg{g}"},
        {"<s:svg xmlns:s='http://www.w3.org/2000/svg'><s:g/><g/></s:svg>", "svg{g g}"},
        // What a dropped element holds, text included, goes to the one round it.
        {start + "a<f:x xmlns:f='foreign'>b<g/><f:y><g/>c</f:y></f:x>d</svg>", "svg'abcd'{g g}"},
        {start + "<x xmlns='foreign'><g/><g xmlns=''/></x><g/></svg>", "svg{g g}"},
        // A prefix means what the innermost declaration says, and again what it meant before.
        {"<svg xmlns:p='foreign'><p:g><p:a xmlns:p=''/><p:b/></p:g></svg>", "svg{a}"},
        {"<svg><undeclared:g/><xml:g/></svg>", "svg"},
        {"<f:x xmlns:f='foreign'><svg/></f:x>", "svg"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(tree(row.document), row.tree) << row.document;
    }
}

TEST(SAXParser, AttributesKeepTheirPrefix) {
    EXPECT_EQ(tree("<a xmlns:xlink='http://www.w3.org/1999/xlink' xlink:href='#x' href='#y'/>"),
              "a[xlink:href=#x][href=#y]");
    EXPECT_EQ(tree("<a xmlns:l='http://www.w3.org/1999/xlink' l:href='#x'/>"), "a[l:href=#x]");
    EXPECT_EQ(tree("<a xlink:href='#x' xmlnsx='1'/>"), "a[xlink:href=#x][xmlnsx=1]");
}

TEST(SAXParser, TellsWhereElementsStand) {
    const auto parsed = SAXParser::parse("<a>\n  <b/>\r\n\t<c/><d\n/></a>");
    std::vector<SourceLocation> places;
    for (const auto& element : parsed->elements) {
        places.push_back(element.parsedLocation.value());
    }
    EXPECT_THAT(places, ::testing::ElementsAre(SourceLocation{1, 1}, SourceLocation{2, 3}, SourceLocation{3, 2},
                                               SourceLocation{3, 6}));
}

TEST(SAXParser, SaysWhatIsWrongAndWhere) {
    const struct {
        std::string document, reason;
        std::optional<std::string> element;
        SourceLocation where;
    } rows[] = {
        {"", "no element found", std::nullopt, {1, 1}},
        {"plain text", "syntax error", std::nullopt, {1, 1}},
        {"<svg>\n <g>\n  <a></g>\n</svg>", "mismatched tag", "a", {3, 8}},
        {"<svg><g x='1' x='2'/></svg>", "duplicate attribute", "svg", {1, 15}},
        {"<svg>\xFF</svg>", "not well-formed (invalid token)", "svg", {1, 6}},
        {"<svg a='\xC3('/>", "not well-formed (invalid token)", std::nullopt, {1, 9}},
        {std::string("<svg>\0</svg>", 12), "not well-formed (invalid token)", "svg", {1, 6}},
        {"<svg>&nbsp;</svg>", "undefined entity", "svg", {1, 6}},
        {"<svg><g>", "no element found", "g", {1, 9}},
        {"<svg/><svg/>", "junk after document element", std::nullopt, {1, 7}},
        {"<?xml version='1.0' encoding='EBCDIC'?><a/>", "unknown encoding", std::nullopt, {1, 31}},
        {"<x xmlns='foreign'><y/></x>", "no element in the namespace of SVG", std::nullopt, {1, 28}},
        {"<!DOCTYPE a [<!ENTITY e \"&e;\">]><a>&e;</a>", "recursive entity reference", "a", {1, 36}},
    };
    for (const auto& row : rows) {
        const XMLParserError error = parsingError(row.document);
        EXPECT_EQ(error.kind(), XMLParserError::Kind::invalidDocument) << row.document;
        EXPECT_EQ(error.reason(), row.reason) << row.document;
        EXPECT_EQ(error.element(), row.element) << row.document;
        EXPECT_EQ(error.location(), row.where)
            << row.document << error.location()->line << ":" << *error.location()->column;
    }
}

TEST(SAXParser, CountsOpenElementsTheDroppedIncluded) {
    const std::string foreign = "<f:x xmlns:f='foreign'>";
    const std::size_t half = limits::nesting / 2;
    const std::string opening = repeated(foreign, half) + repeated("<g>", half);
    const std::string closing = repeated("</g>", half) + repeated("</f:x>", half);
    EXPECT_EQ(SAXParser::parse(opening + closing)->elements.size(), half);
    EXPECT_EQ(parsingError(opening + "<g/>" + closing).reason(), "more than 1024 elements inside each other");
    EXPECT_THAT(parsingError(repeated("<g>", 1'000'000)).reason(), HasSubstr("inside each other"));
}

TEST(SAXParser, TakesAMillionElementsAndNoMore) {
    const std::string most = "<svg>" + repeated("<g/>", limits::elements - 1);
    EXPECT_EQ(SAXParser::parse(most + "</svg>")->elements.size(), limits::elements);
    EXPECT_EQ(parsingError(most + "<f:g/></svg>").reason(), "more than 1000000 elements");
}

std::string entitiesInsideEachOther(int depth, int width) {
    std::string document = "<!DOCTYPE svg [<!ENTITY e0 \"text\">";
    for (int i = 1; i < depth; ++i) {
        const std::string inner = "&e" + std::to_string(i - 1) + ";";
        document += "<!ENTITY e" + std::to_string(i) + " \"" + repeated(inner, static_cast<std::size_t>(width)) + "\">";
    }
    return document + "]><svg>&e" + std::to_string(depth - 1) + ";</svg>";
}

TEST(SAXParser, BoundsWhatEntitiesCost) {
    EXPECT_EQ(tree(entitiesInsideEachOther(static_cast<int>(limits::entities), 1)), "svg'text'");
    EXPECT_EQ(parsingError(entitiesInsideEachOther(static_cast<int>(limits::entities) + 1, 1)).reason(),
              "more than 1024 entities");
    EXPECT_THAT(parsingError(entitiesInsideEachOther(30, 2)).reason(), HasSubstr("amplification"));
    EXPECT_THAT(parsingError(entitiesInsideEachOther(10, 10)).reason(), HasSubstr("amplification"));
}

TEST(SAXParser, BoundsWhatADocumentCosts) {
    std::string defaults = "<!DOCTYPE svg [<!ATTLIST g ";
    for (int i = 0; i < 2000; ++i) {
        defaults += "a" + std::to_string(i) + " CDATA \"\" ";
    }
    const std::string foreign = "<svg><g xmlns='foreign'>" + repeated("<g/>", 100'000) + "</g></svg>";
    const std::string own = "<svg>" + repeated("<g/>", 100'000) + "</svg>";
    const std::string longText = "<svg><a x='" + std::string(170U << 20U, ' ') + "'/></svg>";
    for (const std::string& document : {defaults + ">]>" + own, defaults + ">]>" + foreign, longText}) {
        EXPECT_THAT(parsingError(document).reason(), StartsWith("too large: ")) << document.substr(0, 30);
    }
    // What one document held is free for the next.
    EXPECT_EQ(tree("<a/>"), "a");
}

TEST(SAXParser, NeverLooksOutsideTheDocument) {
    const TemporaryFolder folder;
    const auto secret = folder.write("secret", "<b/>");
    EXPECT_EQ(tree("<!DOCTYPE a SYSTEM \"" + secret.string() + "\" [<!ENTITY e SYSTEM \"" + secret.string() +
                   "\">]><a>&e;</a>"),
              "a");
}

TEST(SAXParser, ReadsFiles) {
    const TemporaryFolder folder;
    EXPECT_EQ(written(*SAXParser::parseContentsOf(folder.write("a.svg", "<a><b/></a>"))->root), "a{b}");
    // Longer than what is read at a time, with a tag across the border.
    const std::string content = "<a>" + std::string((4U << 20U) - 5, ' ') + "<b c='d'/></a>";
    const auto parsed = SAXParser::parseContentsOf(folder.write("long.svg", content));
    ASSERT_EQ(parsed->elements.size(), 2U);
    EXPECT_EQ(written(parsed->elements.back()), "b[c=d]");
    EXPECT_EQ(parsed->root->innerText->size(), (4U << 20U) - 5);
}

TEST(SAXParser, RefusesWhatIsNoReadableFile) {
    const TemporaryFolder folder;
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto sparse = folder.write("sparse.svg", "");
    std::filesystem::resize_file(sparse, limits::fileBytes + 1);
    const struct {
        std::filesystem::path path;
        std::string reason;
    } rows[] = {
        {folder.path() / "missing", "No such file or directory"},
        {folder.path(), "Is a directory"},
        {pipe, "not a regular file"},
        {"/dev/zero", "not a regular file"},
        {folder.write("a.svgz", "\x1f\x8b\x08"), "compressed"},
        {sparse, "too large: more than 256 MB"},
    };
    for (const auto& row : rows) {
        const auto error = errorOf([&] { static_cast<void>(SAXParser::parseContentsOf(row.path)); });
        EXPECT_EQ(error.kind(), XMLParserError::Kind::other) << row.path;
        EXPECT_THAT(error.reason(), HasSubstr(row.reason)) << row.path;
    }
    EXPECT_THAT(parsingError("\x1f\x8b\x08").reason(), HasSubstr("compressed"));
}

}  // namespace
}  // namespace sorvik::draw::testing
