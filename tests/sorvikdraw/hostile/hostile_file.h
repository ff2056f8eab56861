#pragma once

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <string>
#include <string_view>

namespace sorvik::draw::test {

/// How the tool must end.
enum class End {
    drawn,           ///< a picture and status 0
    refused,         ///< a line or two on standard error, no output and another status
    drawnAsPicture,  ///< one of the two as PDF, which is held as a whole
    noPicture,       ///< refused where pixels are counted, one of the two as PDF
    either,          ///< one of the two
};

/// One drawing that means no good.
struct HostileFile {
    std::string_view name;  ///< letters and digits
    End end = End::drawn;
    std::string (*contents)() = nullptr;
    std::string_view size = {};       ///< the value of --size
    std::string_view complaint = {};  ///< stands in what is said about a refused one
    bool marked = true;               ///< false where the marker is out of sight
};

inline void PrintTo(const HostileFile& file, std::ostream* out) { *out << file.name; }

/// A drawing 100 wide and high that ends in the marker, so that a picture can be told to be complete.
std::string document(std::string_view body);
std::string documentWith(std::string_view rootAttributes, std::string_view body);

/// A lime square in the last corner of a hundred user units.
inline constexpr std::string_view marker = R"(<rect x="90" y="90" width="10" height="10" style="fill:#0f0"/>)";

std::string repeated(std::string_view text, std::size_t times);

/// `make(i)` for i from 0 to below `count`, put together.
template <typename Make>
std::string joined(std::size_t count, Make make) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += make(i);
    }
    return all;
}

/// Each case is drawn once as PNG and once as PDF. With SORVIK_KEEP_PICTURES=/some/folder the drawing and what came of
/// it stay there.
class HostileFiles : public testing::TestWithParam<HostileFile> {};

inline std::string nameOf(const testing::TestParamInfo<HostileFile>& file) { return std::string(file.param.name); }

}  // namespace sorvik::draw::test
