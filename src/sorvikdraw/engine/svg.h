#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "sorvikdraw/engine/cg_types.h"
#include "sorvikdraw/engine/generator_warnings.h"

namespace sorvik::draw {

/// What goes on each side, in user units.
struct SVGInsets {
    double top = 0, left = 0, bottom = 0, right = 0;
    bool operator==(const SVGInsets&) const = default;
};

/// A drawing that is ready to be played: its size in user units, and commands. A plain value, to be used on any thread.
class SVG {
public:
    enum Options : std::int32_t {
        defaultOptions = 0,
        hideUnsupportedFilters = 1,  ///< elements with a filter are left out instead of drawn without it
    };
    struct Size {
        double width = 0, height = 0;
        bool operator==(const Size&) const = default;
    };
    using Insets = SVGInsets;

    SVG(Size size, CGCommands commands);

    using Caller = layer_tree::Caller;

    /// Each of them is absent when the document does not load, after one line about it on standard error. What is
    /// drawn differently from what the document says is told on standard output, in the spelling of the caller.
    /// A file is looked for in SVGGCache first: one that changed since it was read there is not read again.
    [[nodiscard]] static std::optional<SVG> load(const std::filesystem::path& file, Options options = defaultOptions,
                                                 Caller caller = Caller::library);
    [[nodiscard]] static std::optional<SVG> loadData(std::string_view bytes, Options options = defaultOptions,
                                                     Caller caller = Caller::library);
    [[nodiscard]] static std::optional<SVG> loadXML(std::string_view xml, Options options = defaultOptions,
                                                    Caller caller = Caller::library);
    /// A file of the folder that stands in a bundle's place.
    [[nodiscard]] static std::optional<SVG> loadNamed(std::string_view name, const std::filesystem::path& bundle,
                                                      Options options = defaultOptions,
                                                      Caller caller = Caller::library);

    [[nodiscard]] Size size() const { return size_; }
    [[nodiscard]] const CGCommands& commands() const { return commands_; }
    /// By value: two loads of a document are equal.
    bool operator==(const SVG& other) const;
    [[nodiscard]] std::size_t hash() const;

    // A change of geometry goes ahead of the commands and changes the size. A side of 0 can't be scaled and stays
    // without content.
    void resize(Size size);
    [[nodiscard]] SVG sized(Size size) const&;
    [[nodiscard]] SVG sized(Size size) &&;
    void scale(double factor) { scale(factor, factor); }
    void scale(double x, double y);
    [[nodiscard]] SVG scaled(double factor) const { return scaled(factor, factor); }
    [[nodiscard]] SVG scaled(double x, double y) const;
    void translate(double tx, double ty);
    [[nodiscard]] SVG translated(double tx, double ty) const;
    void expand(double by) { expand(Insets{by, by, by, by}); }
    void expand(const Insets& by);
    [[nodiscard]] SVG expanded(double by) const { return expanded(Insets{by, by, by, by}); }
    [[nodiscard]] SVG expanded(const Insets& by) const;

    // Encoded pictures. `scale` is pixels a user unit, 0 as 1. Positive insets grow the picture on that side, as
    // expanded() does. They throw DrawingError ("Failed to create CGContext", "Failed to retrieve jpeg data"), and
    // LimitError for a canvas or a drawing beyond limits.h.
    [[nodiscard]] std::vector<std::byte> pngData(double scale = 0, const Insets& insets = {}) const;
    [[nodiscard]] std::vector<std::byte> pngData(Size size, double scale = 0) const;
    /// `compressionQuality` is 0.0 to 1.0. The background is white.
    [[nodiscard]] std::vector<std::byte> jpegData(double scale = 0, double compressionQuality = 1,
                                                  const Insets& insets = {}) const;
    [[nodiscard]] std::vector<std::byte> jpegData(Size size, double scale = 0, double compressionQuality = 1) const;
    /// One page of the drawing's size, one point a user unit, vectors as vectors.
    [[nodiscard]] std::vector<std::byte> pdfData() const;

private:
    Size size_;
    CGCommands commands_;
};

}  // namespace sorvik::draw

template <>
struct std::hash<sorvik::draw::SVG> {
    std::size_t operator()(const sorvik::draw::SVG& svg) const { return svg.hash(); }
};
