#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "sorvikdraw/dom/xml_parser_error.h"

namespace sorvik::draw::testing {

/// What `action` throws; a failure of the test if it throws nothing.
template <typename Action>
XMLParserError errorOf(const Action& action) {
    try {
        action();
    } catch (const XMLParserError& error) {
        return error;
    }
    throw std::logic_error("nothing was thrown");
}

inline std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (; times > 0; --times) {
        all += text;
    }
    return all;
}

/// A folder that is gone with the test.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "drawdom-XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        path_ = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    std::filesystem::path write(const std::string& name, std::string_view content) const {
        std::ofstream(path_ / name, std::ios::binary) << content;
        return path_ / name;
    }

private:
    std::filesystem::path path_;
};

}  // namespace sorvik::draw::testing
