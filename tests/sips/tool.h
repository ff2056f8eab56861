#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "codecs/sips_status.h"

namespace sorvik::sips::test {

struct Outcome {
    int status = -1;  ///< of the exit, or 128 + the signal
    std::string output;
    std::string error;
    double seconds = 0;
    long peakKilobytes = 0;
};

/// Runs the real tool and waits. `largestFile` limits the bytes of a file that it may write, 0 is no limit.
Outcome runSips(const std::vector<std::string>& arguments, std::size_t largestFile = 0);

/// `-s format F` and further settings, the input and the output.
Outcome convert(const std::filesystem::path& input, const std::filesystem::path& output, const std::string& format,
                const std::vector<std::string>& settings = {});

/// A folder for one test, removed with it.
class Folder {
public:
    Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder();
    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return path_ / name; }
    [[nodiscard]] std::size_t entries() const;

private:
    std::filesystem::path path_;
};

/// A picture of tests/data, for example "jpeg/iptc.jpg".
std::filesystem::path sample(std::string_view name);

std::string contentsOf(const std::filesystem::path& file);
void write(const std::filesystem::path& file, std::string_view contents);

/// One sentence for the user, and nothing else.
bool isOneSentence(std::string_view error);

/// For messages and comparisons.
constexpr int code(codecs::SipsStatus status) { return static_cast<int>(status); }

}  // namespace sorvik::sips::test
