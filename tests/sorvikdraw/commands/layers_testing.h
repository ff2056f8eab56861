#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "sorvikdraw/engine/cg_provider.h"
#include "sorvikdraw/engine/command_generator.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::testing {

inline constexpr layer_tree::RGBA red{1, 0, 0, 1};
inline constexpr layer_tree::RGBA blue{0, 0, 1, 1};

/// Layers of a drawing by hand; the first made is its root.
class Layers {
public:
    Layers() { tree.root = add(); }

    layer_tree::Layer* add();
    layer_tree::Layer* add(layer_tree::Layer* parent);
    /// A layer that holds one more layer in many places: each call doubles what is drawn.
    layer_tree::Layer* twice(layer_tree::Layer* layer);
    [[nodiscard]] layer_tree::Layer& root() const { return *tree.root; }

    layer_tree::Tree tree;
};

[[nodiscard]] layer_tree::Shape line(float length);
[[nodiscard]] layer_tree::Shape square(float side);

/// Adds a shape without stroke, and gives it for changes.
layer_tree::Layer::ShapeContents& addShape(layer_tree::Layer& layer, layer_tree::Shape shape, layer_tree::Fill fill);
/// Adds a shape without fill, one unit wide.
layer_tree::Layer::ShapeContents& addStroke(layer_tree::Layer& layer, layer_tree::Shape shape,
                                            layer_tree::Stroke stroke);

[[nodiscard]] CGCommands commands(const layer_tree::Tree& tree, layer_tree::GeneratorOptions options = {});
/// The lines of the whole list.
[[nodiscard]] std::vector<std::string> lines(const CGCommands& commands);
[[nodiscard]] std::vector<std::string> lines(const layer_tree::Tree& tree, layer_tree::GeneratorOptions options = {});

[[nodiscard]] layer_tree::Bitmap png(int width, int height);
/// Its header says that size; its pixels are fewer.
[[nodiscard]] layer_tree::Bitmap jpeg(int width, int height);
[[nodiscard]] layer_tree::Bitmap bitmap(layer_tree::Bitmap::Format format, const std::string& bytes);

}  // namespace sorvik::draw::testing
