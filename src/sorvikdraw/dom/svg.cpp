#include "sorvikdraw/dom/svg.h"

#include <system_error>

#include "sorvikdraw/dom/sax_parser.h"
#include "sorvikdraw/dom/xml_parser.h"

namespace sorvik::draw::dom {
namespace {

/// Goes through elements and what they hold, a parent before its children. Without recursion.
class Walk {
public:
    explicit Walk(std::span<const GraphicsElement* const> elements) : ahead_{elements} {}

    /// The next element; null behind the last.
    const GraphicsElement* next() {
        while (!ahead_.empty() && ahead_.back().empty()) {
            ahead_.pop_back();
        }
        if (ahead_.empty()) {
            return nullptr;
        }
        const GraphicsElement* const element = ahead_.back().front();
        ahead_.back() = ahead_.back().subspan(1);
        ahead_.push_back(childElements(*element));
        return element;
    }

private:
    std::vector<std::span<const GraphicsElement* const>> ahead_;
};

SVG parseTree(const xml::Tree& tree, XMLParserOptions options, std::string filename = {}) {
    return XMLParser(options, std::move(filename)).parseSVG(*tree.root);
}

}  // namespace

SVG SVG::parse(const std::filesystem::path& file, XMLParserOptions options) {
    return parseTree(*xml::SAXParser::parseContentsOf(file), options, file.filename().string());
}

SVG SVG::parseData(std::string_view bytes, XMLParserOptions options) {
    return parseTree(*xml::SAXParser::parse(bytes), options);
}

SVG SVG::parseXML(std::string_view xml, XMLParserOptions options) { return parseData(xml, options); }

SVG SVG::parseNamed(std::string_view name, const std::filesystem::path& bundle, XMLParserOptions options) {
    const auto file = bundle / name;
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(file, unknown)) {
        throw XMLParserError::other("missing resource: " + std::string(name) + " in bundle: " + bundle.string());
    }
    return parse(file, options);
}

const GraphicsElement* SVG::firstGraphicsElement(std::string_view id) const {
    if (const auto defined = defs.elements.find(id); defined != defs.elements.end()) {
        return defined->second;
    }
    if (firstById) {
        const auto known = firstById->find(id);
        return known == firstById->end() ? nullptr : known->second;
    }
    Walk walk(children);
    const GraphicsElement* element = walk.next();
    while (element != nullptr && !(element->id && *element->id == id)) {
        element = walk.next();
    }
    return element;
}

void SVG::indexIds() {
    auto& index = firstById.emplace();
    Walk walk(children);
    while (const GraphicsElement* const element = walk.next()) {
        if (element->id) {
            index.try_emplace(*element->id, element);
        }
    }
}

}  // namespace sorvik::draw::dom
