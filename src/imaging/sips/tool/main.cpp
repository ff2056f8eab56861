// The tool that the program runs for one picture. Jobs that need no more than our own codecs are done
// at once; for all others this process becomes a larger one that lies beside it: `sips-look` to look into a
// container, `sips-full` for everything else.

#include <unistd.h>

#include <climits>
#include <csignal>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "imaging/sips/arguments.h"
#include "imaging/sips/content_kind.h"
#include "imaging/sips/direct_route.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/files.h"
#include "imaging/sips/keep_looks.h"
#include "imaging/sips/picture_facts.h"
#include "imaging/sips/recode_jpeg.h"

namespace {

using namespace sorvik::sips;

constexpr const char* fullTool = "sips-full";
constexpr const char* lookTool = "sips-look";

/// Does a job, or names the tool that does it; null when it is done.
struct Runner {
    const char* operator()(const ConvertRequest& request) const {
        const InputFile input(request.input);
        return convertDirectly(request, input) ? nullptr : fullTool;
    }
    const char* operator()(const CarryRequest& /*request*/) const { return fullTool; }
    const char* operator()(const DescribeRequest& request) const {
        const InputFile input(request.path);
        const ContentKind kind = contentKindOf(input.bytes());
        if (kind == ContentKind::heif || kind == ContentKind::pdf) {
            return lookTool;
        }
        announce(plainFacts(input));
        return nullptr;
    }
    const char* operator()(const KeepLooksRequest& request) const {
        return keepLooksDirectly(request) ? nullptr : fullTool;
    }
    const char* operator()(const RecodeRequest& request) const {
        recodeJpeg(request);
        return nullptr;
    }
};

[[noreturn]] void become(const char* tool, char** argv) {
    std::string path(PATH_MAX, '\0');
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    path = path.substr(0, path.rfind('/') + 1) + tool;
    ::execv(path.c_str(), argv);
    throw Failure(Status::failed, std::string(tool) + " is missing from the folder of sips");
}

Status run(char** argv, const std::vector<std::string_view>& arguments) {
    if (const char* tool = std::visit(Runner(), parseArguments(arguments)); tool != nullptr) {
        become(tool, argv);
    }
    return Status::finished;
}

}  // namespace

int main(int argc, char** argv) {
    // A file size limit is to be an error of write() like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return static_cast<int>(reportingFailures(STDERR_FILENO, [&] { return run(argv, arguments); }));
}
