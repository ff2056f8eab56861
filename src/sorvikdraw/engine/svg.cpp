#include "sorvikdraw/engine/svg.h"

#include <exception>
#include <functional>
#include <string>
#include <utility>

#include "sorvikdraw/dom/parsing_log.h"
#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/engine/cg_provider.h"
#include "sorvikdraw/engine/command_generator.h"
#include "sorvikdraw/engine/command_list.h"
#include "sorvikdraw/engine/layer_tree_builder.h"
#include "sorvikdraw/engine/svg_cache.h"

namespace sorvik::draw {
namespace {

// By value, so that the document is gone before commands are made of its layers.
layer_tree::Tree layers(dom::SVG document) { return layer_tree::Builder(document).makeLayer(); }

SVG make(dom::SVG document, SVG::Options options, SVG::Caller caller) {
    const SVG::Size size{static_cast<double>(document.width), static_cast<double>(document.height)};
    const layer_tree::Tree tree = layers(std::move(document));
    layer_tree::CommandGenerator generator(
        CGProvider{}, {.hideUnsupportedFilters = (options & SVG::hideUnsupportedFilters) != 0, .caller = caller});
    return {size, generator.makeCommands(tree)};
}

template <typename Parse>
std::optional<SVG> loaded(const Parse& parse, const std::string& filename, SVG::Options options, SVG::Caller caller) {
    try {
        return make(parse(), options, caller);
    } catch (const std::exception& error) {
        logParsingError(error, filename);
        return std::nullopt;
    }
}

CGCommand scaling(double x, double y) { return {CGCommand::Scale{static_cast<float>(x), static_cast<float>(y)}}; }

CGCommand translation(double tx, double ty) {
    return {CGCommand::Translate{static_cast<float>(tx), static_cast<float>(ty)}};
}

double ratio(double size, double old) { return old > 0 ? size / old : 1; }

}  // namespace

SVG::SVG(Size size, CGCommands commands) : size_(size), commands_(std::move(commands)) {}

std::optional<SVG> SVG::load(const std::filesystem::path& file, Options options, Caller caller) {
    SVGGCache& cache = SVGGCache::shared();
    if (std::optional<SVG> known = cache.svg(file, options)) {
        return known;
    }
    std::optional<SVG> svg =
        loaded([&file] { return dom::SVG::parse(file); }, file.filename().native(), options, caller);
    if (svg) {
        cache.setSVG(*svg, file, options);
    }
    return svg;
}

std::optional<SVG> SVG::loadData(std::string_view bytes, Options options, Caller caller) {
    return loaded([bytes] { return dom::SVG::parseData(bytes); }, {}, options, caller);
}

std::optional<SVG> SVG::loadXML(std::string_view xml, Options options, Caller caller) {
    return loaded([xml] { return dom::SVG::parseXML(xml); }, {}, options, caller);
}

std::optional<SVG> SVG::loadNamed(std::string_view name, const std::filesystem::path& bundle, Options options,
                                  Caller caller) {
    return loaded([&] { return dom::SVG::parseNamed(name, bundle); }, std::string(name), options, caller);
}

bool SVG::operator==(const SVG& other) const { return size_ == other.size_ && equal(commands_, other.commands_); }

std::size_t SVG::hash() const {
    constexpr std::size_t widthFactor = 31;
    constexpr std::size_t heightFactor = 37;
    return draw::hash(commands_) + widthFactor * std::hash<double>{}(size_.width) +
           heightFactor * std::hash<double>{}(size_.height);
}

void SVG::resize(Size size) {
    if (size == size_) {
        return;
    }
    commands_.insert(commands_.begin(), scaling(ratio(size.width, size_.width), ratio(size.height, size_.height)));
    size_ = size;
}

SVG SVG::sized(Size size) const& { return SVG(*this).sized(size); }

SVG SVG::sized(Size size) && {
    resize(size);
    return std::move(*this);
}

void SVG::scale(double x, double y) {
    commands_.insert(commands_.begin(), scaling(x, y));
    size_ = {size_.width * x, size_.height * y};
}

SVG SVG::scaled(double x, double y) const {
    SVG copy = *this;
    copy.scale(x, y);
    return copy;
}

void SVG::translate(double tx, double ty) { commands_.insert(commands_.begin(), translation(tx, ty)); }

SVG SVG::translated(double tx, double ty) const {
    SVG copy = *this;
    copy.translate(tx, ty);
    return copy;
}

void SVG::expand(const Insets& by) {
    translate(by.left, by.top);
    size_ = {size_.width + by.left + by.right, size_.height + by.top + by.bottom};
}

SVG SVG::expanded(const Insets& by) const {
    SVG copy = *this;
    copy.expand(by);
    return copy;
}

}  // namespace sorvik::draw
