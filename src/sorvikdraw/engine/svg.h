#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "sorvikdraw/engine/cg_types.h"

namespace sorvik::draw {

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
    struct Insets {
        double top = 0, left = 0, bottom = 0, right = 0;
        bool operator==(const Insets&) const = default;
    };

    SVG(Size size, CGCommands commands);

    /// Each of them is absent when the document does not load, after one line about it on standard error.
    [[nodiscard]] static std::optional<SVG> load(const std::filesystem::path& file, Options options = defaultOptions);
    [[nodiscard]] static std::optional<SVG> loadData(std::string_view bytes, Options options = defaultOptions);
    [[nodiscard]] static std::optional<SVG> loadXML(std::string_view xml, Options options = defaultOptions);
    [[nodiscard]] static std::optional<SVG> loadNamed(std::string_view name, const std::filesystem::path& bundle,
                                                      Options options = defaultOptions);

    [[nodiscard]] Size size() const { return size_; }
    [[nodiscard]] const CGCommands& commands() const { return commands_; }
    bool operator==(const SVG&) const = default;
    [[nodiscard]] std::size_t hash() const;

    // A change of geometry goes ahead of the commands and changes the size.
    void resize(Size size);
    [[nodiscard]] SVG sized(Size size) const&;
    [[nodiscard]] SVG sized(Size size) &&;
    void scale(double x, double y);
    [[nodiscard]] SVG scaled(double factor) const { return scaled(factor, factor); }
    [[nodiscard]] SVG scaled(double x, double y) const;
    void translate(double tx, double ty);
    [[nodiscard]] SVG translated(double tx, double ty) const;
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
