#include "codecs/jpeg_writer.h"
#include "codecs/png_writer.h"
#include "codecs/premultiplied_png.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

namespace sorvik::codecs {
namespace {

constexpr PixelLayout layout{.width = 2000, .height = 1500, .channels = 3, .bitsPerSample = 8};

/// Like a photograph to a compressor: soft shades with grain on them.
std::vector<std::byte> photograph() {
    std::mt19937 random(1);
    std::normal_distribution<double> grain(0, 3);
    std::vector<std::byte> pixels;
    pixels.reserve(layout.rowBytes() * layout.height);
    for (std::uint32_t y = 0; y < layout.height; ++y) {
        for (std::uint32_t x = 0; x < layout.width; ++x) {
            for (int channel = 0; channel < layout.channels; ++channel) {
                const double shade = 128 + 90 * std::sin(x / 150.0 + channel) * std::cos(y / 110.0);
                pixels.push_back(static_cast<std::byte>(std::clamp(std::lround(shade + grain(random)), 0L, 255L)));
            }
        }
    }
    return pixels;
}

/// Few colours in large areas, as a chart or a window has them.
std::vector<std::byte> drawing() {
    constexpr std::array colours{std::byte{0}, std::byte{90}, std::byte{200}, std::byte{255}};
    std::vector<std::byte> pixels;
    pixels.reserve(layout.rowBytes() * layout.height);
    for (std::uint32_t y = 0; y < layout.height; ++y) {
        for (std::uint32_t x = 0; x < layout.width; ++x) {
            pixels.insert(pixels.end(), static_cast<std::size_t>(layout.channels),
                          colours.at((x / 170 + y / 230) % colours.size()));
        }
    }
    return pixels;
}

void writePng(benchmark::State& state, const std::vector<std::byte>& pixels, const PngOptions& options) {
    std::size_t written = 0;
    for (auto _ : state) {
        BufferSink sink;
        const auto writer = makePngWriter(sink, layout, {}, options);
        writer->writeRows(pixels.data(), layout.rowBytes(), layout.height);
        writer->finish();
        written = sink.bytes().size();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(pixels.size()));
    state.counters["ratio"] = static_cast<double>(written) / static_cast<double>(pixels.size());
}

constexpr PixelLayout smallLayout{.width = 300, .height = 200, .channels = 4};

/// As drawing libraries keep it: bars with soft edges, half of them half-transparent. `hues` beyond 10 are more colours
/// than a palette holds.
std::vector<std::byte> premultiplied(const PixelLayout& size, std::uint32_t hues) {
    std::vector<std::byte> pixels;
    pixels.reserve(std::size_t{4} * size.width * size.height);
    for (std::uint32_t y = 0; y < size.height; ++y) {
        for (std::uint32_t x = 0; x < size.width; ++x) {
            const std::uint32_t place = x + y / 3;
            const std::uint32_t bar = place / 40 % hues;
            const std::uint32_t cover = std::min<std::uint32_t>(place % 40 * 12, bar % 2 == 0 ? 255 : 128);
            for (const std::uint32_t colour : {bar * 7, 255 - bar * 3, bar * 11, 255U}) {
                pixels.push_back(static_cast<std::byte>(colour % 256 * cover / 255));
            }
        }
    }
    return pixels;
}

void writePremultiplied(benchmark::State& state, const PixelLayout& size, std::uint32_t hues) {
    const auto pixels = premultiplied(size, hues);
    std::size_t written = 0;
    for (auto _ : state) {
        BufferSink sink;
        writePremultipliedPng(sink, {pixels.data(), std::size_t{4} * size.width, size.width, size.height});
        written = sink.bytes().size();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(pixels.size()));
    state.counters["ratio"] = static_cast<double>(written) / static_cast<double>(pixels.size());
}

void writeJpeg(benchmark::State& state, const PixelLayout& size, int quality) {
    const auto pixels = premultiplied(size, 60);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            encodeJpeg({pixels.data(), std::size_t{4} * size.width, size.width, size.height}, quality));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(pixels.size()));
}

constexpr PngOptions quick{.purpose = PngPurpose::quick};
constexpr PngOptions intermediate{.purpose = PngPurpose::intermediate};

constexpr PngOptions kept(int level) { return {.purpose = PngPurpose::kept, .level = level}; }

BENCHMARK_CAPTURE(writePng, photograph_intermediate, photograph(), intermediate)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePng, photograph_level_1, photograph(), kept(1))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePng, photograph_level_6, photograph(), kept(6))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePng, photograph_level_9, photograph(), kept(9))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePng, drawing_intermediate, drawing(), intermediate)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePng, photograph_quick, photograph(), quick)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePng, drawing_quick, drawing(), quick)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePng, drawing_level_6, drawing(), kept(6))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePremultiplied, palette, layout, 5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePremultiplied, colours, layout, 60)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePremultiplied, small, smallLayout, 60)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeJpeg, quality_85, layout, 85)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeJpeg, quality_95, layout, 95)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace sorvik::codecs
