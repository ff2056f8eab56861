#include "sorvikdraw/engine/text_outlines.h"

#include <dlfcn.h>

#include <algorithm>
#include <compare>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/text/text_module.h"

namespace sorvik::draw {
namespace {

using layer_tree::Path;
using layer_tree::PathSegment;
using layer_tree::Point;

constexpr const char* moduleName = "sorvikdraw_text.so";

// Beside the program that runs, else in the bundle that tests name.
std::filesystem::path modulePath() {
    std::error_code unknown;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", unknown);
    if (auto beside = program.parent_path() / moduleName; std::filesystem::exists(beside, unknown)) {
        return beside;
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
    const char* const bundle = std::getenv("SORVIK_BUNDLE");
    if (bundle == nullptr || *bundle == '\0') {
        throw DrawingError("text can't be drawn: " + std::string(moduleName) + " is missing");
    }
    return std::filesystem::path(bundle) / "Contents" / "Resources" / moduleName;
}

// Stays loaded to the end.
struct TextModule {
    SorvikTextOutlineFunction* outline;
    SorvikTextFreeFunction* free;

    TextModule() {
        void* const library = ::dlopen(modulePath().c_str(), RTLD_NOW | RTLD_LOCAL);
        outline = function<SorvikTextOutlineFunction>(library, "sorvikTextOutline");
        free = function<SorvikTextFreeFunction>(library, "sorvikTextFree");
    }

private:
    template <typename Function>
    static Function* function(void* library, const char* name) {
        void* const address = library == nullptr ? nullptr : ::dlsym(library, name);
        if (address == nullptr) {
            const char* const why = ::dlerror();  // NOLINT(concurrency-mt-unsafe): each thread has its own
            throw DrawingError("text can't be drawn: " + std::string(why == nullptr ? "no reason given" : why));
        }
        return reinterpret_cast<Function*>(address);
    }
};

// Points of an outline one after the other, in user units.
class PointReader {
public:
    PointReader(std::span<const float> numbers, float size) : numbers_(numbers), size_(size) {}

    Point next() {
        const Point point{numbers_[0] * size_, numbers_[1] * size_};
        numbers_ = numbers_.subspan(2);
        return point;
    }

private:
    std::span<const float> numbers_;
    float size_;
};

PathSegment segment(SorvikTextVerb verb, PointReader& points) {
    switch (verb) {
        case sorvikTextMove:
            return {PathSegment::Move{points.next()}};
        case sorvikTextLine:
            return {PathSegment::Line{points.next()}};
        case sorvikTextCubic: {
            const Point control1 = points.next();
            const Point control2 = points.next();
            return {PathSegment::Cubic{points.next(), control1, control2}};
        }
        case sorvikTextClose:
            return {PathSegment::Close{}};
    }
    return {};
}

Path makePath(const SorvikTextOutline& outline, float size) {
    PointReader points({outline.numbers, outline.numberCount}, size);
    std::vector<PathSegment> segments;
    segments.reserve(outline.verbCount);
    for (const SorvikTextVerb verb : std::span(outline.verbs, outline.verbCount)) {
        segments.push_back(segment(verb, points));
    }
    return Path{std::move(segments)};
}

// The module serves one at a time. Outlines are asked for twice, to place a text and to draw it.
class TextSetter {
public:
    Path outline(const std::string& text, const std::string& fontName, float size) {
        const std::lock_guard lock(mutex_);
        Key key{size, text, fontName};
        if (const auto known = known_.find(key); known != known_.end()) {
            return known->second;
        }
        Path path = make(key);
        remember(std::move(key), path);
        return path;
    }

private:
    struct Key {
        float size;
        std::string text, fontName;
        auto operator<=>(const Key&) const = default;
    };
    static constexpr std::size_t mostSegments = 1'000'000;  // kept; some 30 MB
    static constexpr std::size_t entryCost = 16;            // of a text, however short, in segments

    static Path make(const Key& key) {
        static const TextModule module;
        SorvikTextOutline outline{};
        switch (module.outline(key.text.data(), key.text.size(), key.fontName.c_str(), &outline)) {
            case sorvikTextDone:
                break;
            case sorvikTextTooLong:
                throw LimitError("a text is too long to be drawn");
            case sorvikTextFailed:
                throw std::bad_alloc();
        }
        const auto release = [](SorvikTextOutline* made) { module.free(made); };
        const std::unique_ptr<SorvikTextOutline, decltype(release)> owner(&outline, release);
        return makePath(outline, key.size);
    }

    void remember(Key key, const Path& path) {
        const std::size_t cost = path.segments.size() + entryCost + (key.text.size() + key.fontName.size()) / entryCost;
        if (kept_ + cost > mostSegments) {
            known_.clear();
            kept_ = 0;
        }
        kept_ += cost;
        known_.emplace(std::move(key), path);
    }

    std::mutex mutex_;
    std::map<Key, Path> known_;  // sorted: texts that collide are easy to find
    std::size_t kept_ = 0;
};

std::size_t characters(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

}  // namespace

Path textOutline(const std::string& text, const std::string& fontName, float size) {
    // Beyond it, coordinates would leave the range of floats.
    constexpr float largestSize = 1e30F;
    static TextSetter setter;
    if (characters(text) > limits::textCharacters) {
        throw LimitError("a text has more than " + std::to_string(limits::textCharacters) + " characters");
    }
    return size > 0 && size < largestSize ? setter.outline(text, fontName, size) : Path{};
}

}  // namespace sorvik::draw
