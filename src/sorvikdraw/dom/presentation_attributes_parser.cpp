#include "sorvikdraw/dom/presentation_attributes_parser.h"

#include <algorithm>
#include <array>

#include "sorvikdraw/dom/attribute_parser.h"
#include "sorvikdraw/dom/presentation_fields.h"
#include "sorvikdraw/dom/value_parser.h"

namespace sorvik::draw {

namespace {

using dom::presentationFields;

// In the order of the fields.
constexpr auto names = std::to_array<std::string_view>({
    "opacity",          "display",        "color",          "stroke",
    "stroke-width",     "stroke-opacity", "stroke-linecap", "stroke-linejoin",
    "stroke-dasharray", "fill",           "fill-opacity",   "fill-rule",
    "font-family",      "font-size",      "text-anchor",    "transform",
    "clip-path",        "clip-rule",      "mask",           "filter",
});
static_assert(names.size() == presentationFields);

consteval std::size_t fieldNamed(std::string_view name) {
    std::size_t field = 0;
    while (names.at(field) != name) {
        ++field;
    }
    return field;
}

// Names of one length stand together, so that most other names are told from them by a number.
constexpr auto fieldsByLength = [] {
    std::array<std::uint8_t, presentationFields> fields{};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        fields[i] = static_cast<std::uint8_t>(i);
    }
    std::sort(fields.begin(), fields.end(), [](auto a, auto b) { return names[a].size() < names[b].size(); });
    return fields;
}();
constexpr auto lengthLimit = names[fieldsByLength.back()].size() + 1;
constexpr auto firstOfLength = [] {
    std::array<std::uint8_t, lengthLimit + 1> first{};
    for (std::size_t length = 0; length < first.size(); ++length) {
        while (first[length] < presentationFields && names[fieldsByLength[first[length]]].size() < length) {
            ++first[length];
        }
    }
    return first;
}();

// The texts of those that are there.
class Reader {
public:
    using Attributes = std::span<const xml::Attribute>;

    Reader(Attributes element, Attributes style, XMLParserOptions options) : options_(options) {
        collect(element, &AttributeTexts::element);
        collect(style, &AttributeTexts::style);
    }

    [[nodiscard]] bool empty() const { return !any_; }

    template <typename How>
    auto operator()(std::size_t field, How how) const {
        auto found = lookUp(texts_[field], options_, how);
        if (found.invalidText && !contains(options_, skipInvalidAttributes)) {
            throwInvalidAttribute(names[field], *found.invalidText);
        }
        return std::move(found.value);
    }

    // Not what `operator()` does: a list that does not parse is an error under all options.
    [[nodiscard]] Boxed<std::vector<dom::Transform>> transform(std::size_t field) const {
        const auto text = texts_[field].style ? texts_[field].style : texts_[field].element;
        if (!text) {
            return {};
        }
        auto transforms = ValueParser::parseTransform(*text);
        if (!transforms) {
            throwInvalidAttribute(names[field], *text);
        }
        return *std::move(transforms);
    }

private:
    void collect(Attributes attributes, std::optional<std::string_view> AttributeTexts::*place) {
        for (const auto& attribute : attributes) {
            if (const auto field = presentationAttributeIndex(attribute.name)) {
                texts_[*field].*place = attribute.value;
                any_ = true;
            }
        }
    }

    XMLParserOptions options_;
    bool any_ = false;
    std::array<AttributeTexts, presentationFields> texts_{};
};

template <typename Value>
Boxed<Value> boxed(std::optional<Value> value) {
    return value ? Boxed<Value>(*std::move(value)) : Boxed<Value>();
}

// "none" is a good value that says nothing.
std::optional<Boxed<std::vector<float>>> dashes(std::string_view text) {
    if (trimmed(text) == "none") {
        return Boxed<std::vector<float>>();
    }
    auto lengths = ValueParser::parseFloats(text);
    return lengths ? std::optional(boxed(std::move(lengths))) : std::nullopt;
}

std::optional<std::string> trimmedString(std::string_view text) { return std::string(trimmed(text)); }

}  // namespace

std::optional<std::size_t> presentationAttributeIndex(std::string_view name) {
    if (name.size() >= lengthLimit) {
        return std::nullopt;
    }
    for (auto i = firstOfLength[name.size()]; i < firstOfLength[name.size() + 1]; ++i) {
        if (names[fieldsByLength[i]] == name) {
            return fieldsByLength[i];
        }
    }
    return std::nullopt;
}

std::string_view presentationAttributeName(std::size_t field) { return names[field]; }

bool anyPresentationAttribute(std::span<const xml::Attribute> attributes) {
    return std::any_of(attributes.begin(), attributes.end(), [](const xml::Attribute& attribute) {
        return presentationAttributeIndex(attribute.name).has_value();
    });
}

dom::PresentationAttributes parsePresentationAttributes(std::span<const xml::Attribute> element,
                                                        std::span<const xml::Attribute> style,
                                                        XMLParserOptions options) {
    const Reader read(element, style, options);
    dom::PresentationAttributes attributes;
    if (read.empty()) {
        return attributes;
    }
    // The first bad one in this order is the one reported.
    attributes.opacity = read(fieldNamed("opacity"), ValueParser::parsePercentage);
    attributes.display = read(fieldNamed("display"), ValueParser::parseRaw<dom::DisplayMode>);
    attributes.color = read(fieldNamed("color"), ValueParser::parseColor);
    attributes.stroke = read(fieldNamed("stroke"), ValueParser::parseFill);
    attributes.strokeWidth = read(fieldNamed("stroke-width"), ValueParser::parseFloat);
    attributes.strokeOpacity = read(fieldNamed("stroke-opacity"), ValueParser::parsePercentage);
    attributes.strokeLineCap = read(fieldNamed("stroke-linecap"), ValueParser::parseRaw<dom::LineCap>);
    attributes.strokeLineJoin = read(fieldNamed("stroke-linejoin"), ValueParser::parseRaw<dom::LineJoin>);
    attributes.strokeDashArray = read(fieldNamed("stroke-dasharray"), dashes).value_or(Boxed<std::vector<float>>());
    attributes.fill = read(fieldNamed("fill"), ValueParser::parseFill);
    attributes.fillOpacity = read(fieldNamed("fill-opacity"), ValueParser::parsePercentage);
    attributes.fillRule = read(fieldNamed("fill-rule"), ValueParser::parseRaw<dom::FillRule>);
    attributes.fontFamily = boxed(read(fieldNamed("font-family"), trimmedString));
    attributes.fontSize = read(fieldNamed("font-size"), ValueParser::parseFloat);
    attributes.textAnchor = read(fieldNamed("text-anchor"), ValueParser::parseRaw<dom::TextAnchor>);
    attributes.transform = read.transform(fieldNamed("transform"));
    attributes.clipPath = boxed(read(fieldNamed("clip-path"), ValueParser::parseUrlSelector));
    attributes.clipRule = read(fieldNamed("clip-rule"), ValueParser::parseRaw<dom::FillRule>);
    attributes.mask = boxed(read(fieldNamed("mask"), ValueParser::parseUrlSelector));
    attributes.filter = boxed(read(fieldNamed("filter"), ValueParser::parseUrlSelector));
    return attributes;
}

}  // namespace sorvik::draw
