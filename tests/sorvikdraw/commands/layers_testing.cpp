#include "layers_testing.h"

#include <turbojpeg.h>

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "codecs/byte_sink.h"
#include "codecs/png_writer.h"
#include "sorvikdraw/engine/cg_provider.h"
#include "sorvikdraw/engine/command_printing.h"

namespace sorvik::draw::testing {

using layer_tree::Bitmap;
using layer_tree::Layer;

Layer* Layers::add() { return &tree.layers.emplace_back(); }

Layer* Layers::add(Layer* parent) {
    Layer* child = add();
    parent->contents.emplace_back(child);
    return child;
}

Layer* Layers::twice(Layer* layer) {
    Layer* parent = add();
    parent->contents.emplace_back(layer);
    parent->contents.emplace_back(layer);
    return parent;
}

layer_tree::Shape line(float length) { return {layer_tree::Shape::Line{{{0, 0}, {length, 0}}}}; }

layer_tree::Shape square(float side) { return {layer_tree::Shape::Rectangle{{{0, 0}, {side, side}}, {}}}; }

Layer::ShapeContents& addShape(Layer& layer, layer_tree::Shape shape, layer_tree::Fill fill) {
    auto contents = std::make_unique<Layer::ShapeContents>();
    contents->shape = std::move(shape);
    contents->fill.fill = std::move(fill);
    return *std::get<std::unique_ptr<Layer::ShapeContents>>(layer.contents.emplace_back(std::move(contents)));
}

Layer::ShapeContents& addStroke(Layer& layer, layer_tree::Shape shape, layer_tree::Stroke stroke) {
    Layer::ShapeContents& contents = addShape(layer, std::move(shape), layer_tree::Color{});
    contents.stroke.color = std::move(stroke);
    return contents;
}

CGCommands commands(const layer_tree::Tree& tree, layer_tree::GeneratorOptions options) {
    return layer_tree::CommandGenerator(CGProvider{}, options).makeCommands(tree);
}

std::vector<std::string> lines(const CGCommands& commands) {
    std::vector<std::string> result;
    std::transform(commands.begin(), commands.end(), std::back_inserter(result),
                   [](const CGCommand& command) { return print(command); });
    return result;
}

std::vector<std::string> lines(const layer_tree::Tree& tree, layer_tree::GeneratorOptions options) {
    return lines(commands(tree, options));
}

Bitmap bitmap(Bitmap::Format format, const std::string& bytes) {
    const auto all = std::as_bytes(std::span(bytes));
    return {format, std::make_shared<std::vector<std::byte>>(all.begin(), all.end())};
}

namespace {

void patch(unsigned char* bigEndian, int value) {
    bigEndian[0] = static_cast<unsigned char>(value / 256);
    bigEndian[1] = static_cast<unsigned char>(value % 256);
}

}  // namespace

Bitmap png(int width, int height) {
    codecs::BufferSink sink;
    const codecs::PixelLayout layout{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), 1, 8};
    const auto writer = codecs::makePngWriter(sink, layout, {}, {codecs::PngPurpose::intermediate});
    const std::vector<std::byte> row(layout.rowBytes());
    writer->writeRows(row.data(), 0, layout.height);
    writer->finish();
    return {Bitmap::Format::png, std::make_shared<std::vector<std::byte>>(sink.bytes())};
}

Bitmap jpeg(int width, int height) {
    const tjhandle handle = tjInitCompress();
    const unsigned char pixel = 0;
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    tjCompress2(handle, &pixel, 1, 1, 1, TJPF_GRAY, &bytes, &size, TJSAMP_GRAY, 90, 0);
    constexpr unsigned char frameHeader[] = {0xFF, 0xC0};
    unsigned char* frame = std::search(bytes, bytes + size, std::begin(frameHeader), std::end(frameHeader));
    patch(frame + 5, height);
    patch(frame + 7, width);
    Bitmap result = bitmap(Bitmap::Format::jpeg, std::string(reinterpret_cast<const char*>(bytes), size));
    tjFree(bytes);
    tjDestroy(handle);
    return result;
}

}  // namespace sorvik::draw::testing
