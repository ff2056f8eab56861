// The stages of a drawing, from bytes to a PNG, each by itself over a folder of small files, beside librsvg in the same
// process.
//
// usage: stages_benchmark [FOLDER] [--benchmark_...] 2>/dev/null
//        (what is wrong with a drawing is said on standard error each time)

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "codecs/byte_sink.h"
#include "codecs/premultiplied_png.h"
#include "sorvikdraw/dom/sax_parser.h"
#include "sorvikdraw/dom/xml_parser.h"
#include "sorvikdraw/engine/cg_provider.h"
#include "sorvikdraw/engine/command_generator.h"
#include "sorvikdraw/engine/layer_tree_builder.h"
#include "sorvikdraw/engine/raster_output.h"

namespace {

using namespace sorvik;
using namespace sorvik::draw;
namespace fs = std::filesystem;

struct Unref {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Handle = std::unique_ptr<RsvgHandle, Unref>;
using Surface = std::unique_ptr<cairo_surface_t, Unref>;

std::string read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::unique_ptr<xml::Tree> parse(const std::string& bytes) { return xml::SAXParser::parse(bytes); }

dom::SVG makeDocument(const xml::Tree& tree) { return XMLParser(skipInvalidElements).parseSVG(*tree.root); }

layer_tree::Tree build(const dom::SVG& document) { return layer_tree::Builder(document).makeLayer(); }

SVG generate(const dom::SVG& document, const layer_tree::Tree& tree) {
    // Each warning of a filter would be printed thousands of times.
    layer_tree::CommandGenerator generator(CGProvider{}, {.hideUnsupportedFilters = true});
    return {{static_cast<double>(document.width), static_cast<double>(document.height)}, generator.makeCommands(tree)};
}

std::size_t encode(const Raster& raster) {
    codecs::BufferSink sink;
    codecs::writePremultipliedPng(
        sink, {reinterpret_cast<const std::byte*>(raster.row(0)), raster.stride(),
               static_cast<std::uint32_t>(raster.width()), static_cast<std::uint32_t>(raster.height())});
    return sink.bytes().size();
}

Handle parseWithOther(const std::string& bytes) {
    return Handle(rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(bytes.data()), bytes.size(), nullptr));
}

Surface renderWithOther(RsvgHandle* handle, int width, int height) {
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    const std::unique_ptr<cairo_t, Unref> context(cairo_create(surface.get()));
    const RsvgRectangle viewport{0, 0, static_cast<double>(width), static_cast<double>(height)};
    rsvg_handle_render_document(handle, context.get(), &viewport, nullptr);
    return surface;
}

cairo_status_t count(void* total, const unsigned char* /*bytes*/, unsigned int length) {
    *static_cast<std::size_t*>(total) += length;
    return CAIRO_STATUS_SUCCESS;
}

std::size_t encodeWithOther(cairo_surface_t* surface) {
    std::size_t size = 0;
    cairo_surface_write_to_png_stream(surface, count, &size);
    return size;
}

/// One file with what every stage leaves behind.
struct Drawing {
    explicit Drawing(const fs::path& file)
        : bytes(read(file)),
          tree(parse(bytes)),
          document(makeDocument(*tree)),
          layers(build(document)),
          svg(generate(document, layers)),
          raster(rasterize(svg)),
          other(parseWithOther(bytes)) {
        if (other == nullptr) {
            throw DrawingError("not read by librsvg");
        }
        otherSurface = renderWithOther(other.get(), raster.width(), raster.height());
    }

    std::string bytes;
    std::unique_ptr<xml::Tree> tree;
    dom::SVG document;
    layer_tree::Tree layers;
    SVG svg;
    Raster raster;
    Handle other;
    Surface otherSurface;
};

using Drawings = std::vector<std::unique_ptr<Drawing>>;

/// Those that both programs draw.
Drawings drawingsOf(const fs::path& folder) {
    Drawings drawings;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != ".svg") {
            continue;
        }
        try {
            drawings.push_back(std::make_unique<Drawing>(entry.path()));
        } catch (const std::exception& error) {
            std::fprintf(stderr, "left out: %s: %s\n", entry.path().c_str(), error.what());
        }
    }
    return drawings;
}

/// The time of one round over all the drawings; the counter tells that of one.
template <typename Stage>
void measure(const char* name, const Drawings& drawings, const Stage& stage) {
    benchmark::RegisterBenchmark(name,
                                 [&drawings, stage](benchmark::State& state) {
                                     for (auto _ : state) {
                                         for (const auto& drawing : drawings) {
                                             benchmark::DoNotOptimize(stage(*drawing));
                                         }
                                     }
                                     state.counters["each"] = benchmark::Counter(
                                         static_cast<double>(drawings.size()),
                                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

void measureStages(const Drawings& drawings) {
    measure("parse", drawings, [](const Drawing& each) { return parse(each.bytes); });
    measure("document", drawings, [](const Drawing& each) { return makeDocument(*each.tree); });
    measure("build", drawings, [](const Drawing& each) { return build(each.document); });
    measure("generate", drawings, [](const Drawing& each) { return generate(each.document, each.layers); });
    measure("render", drawings, [](const Drawing& each) { return rasterize(each.svg); });
    measure("encode", drawings, [](const Drawing& each) { return encode(each.raster); });
    measure("librsvg: parse to document", drawings, [](const Drawing& each) { return parseWithOther(each.bytes); });
    measure("librsvg: render", drawings, [](const Drawing& each) {
        return renderWithOther(each.other.get(), each.raster.width(), each.raster.height());
    });
    measure("librsvg: encode with cairo", drawings,
            [](const Drawing& each) { return encodeWithOther(each.otherSurface.get()); });
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const Drawings drawings = drawingsOf(argc > 1 ? argv[1] : SORVIK_PICTURES);
    std::printf("%zu drawings\n", drawings.size());
    measureStages(drawings);
    benchmark::RunSpecifiedBenchmarks();
    return drawings.empty() ? 1 : 0;
}
