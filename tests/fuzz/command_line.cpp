// Arguments, one a line.

#include "sorvikdraw/tool/command_line.h"

#include <cstdint>
#include <string_view>
#include <vector>

#include "sorvikdraw/dom/printable_text.h"
#include "sorvikdraw/tool/error.h"
#include "sorvikdraw/tool/process_image.h"

namespace {

using namespace sorvik::draw::command_line;

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines{"sorvikdraw"};
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        lines.push_back(line);
        text.remove_prefix(line.size() == text.size() ? line.size() : line.size() + 1);
    }
    return lines;
}

void require(bool truth) {
    if (!truth) {
        __builtin_trap();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto arguments = linesOf({reinterpret_cast<const char*>(data), size});
    (void)asksForHelp(arguments);
    try {
        const Configuration configuration = parseConfiguration(arguments, "/base");
        require(configuration.input.is_absolute() && configuration.output.is_absolute());
        require(!configuration.size || (configuration.size->width > 0 && configuration.size->height > 0));
        (void)makeImageInsets(configuration.insets);
    } catch (const Error& error) {
        constexpr std::size_t most = 1000;
        const std::string line = sorvik::draw::printable(error.what(), most);
        require(!line.empty() && sorvik::draw::printable(line, most) == line);
    }
    return 0;
}
