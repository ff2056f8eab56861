// The tool that the program runs for one picture. Jobs that need no more than our own codecs are done
// at once; for all others this process becomes `sips-full`, which lies beside it.

#include <unistd.h>

#include <climits>
#include <csignal>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "imaging/sips/arguments.h"
#include "imaging/sips/direct_route.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/files.h"

namespace {

using namespace sorvik::sips;

std::string fullTool() {
    std::string path(PATH_MAX, '\0');
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return path.substr(0, path.rfind('/') + 1) + "sips-full";
}

Status run(char** argv, const std::vector<std::string_view>& arguments) {
    const Request request = parseArguments(arguments);
    if (const auto* convert = std::get_if<ConvertRequest>(&request)) {
        const InputFile input(convert->input);
        if (const auto status = convertDirectly(*convert, input)) {
            return *status;
        }
    }
    ::execv(fullTool().c_str(), argv);
    throw Failure(Status::failed, "sips-full is missing from the folder of sips");
}

}  // namespace

int main(int argc, char** argv) {
    // A file size limit is to be an error of write() like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return static_cast<int>(reportingFailures(STDERR_FILENO, [&] { return run(argv, arguments); }));
}
