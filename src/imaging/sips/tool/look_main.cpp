// What `sips` becomes to look into a container: HEIC, AVIF and PDF.

#include <unistd.h>

#include <csignal>
#include <string_view>
#include <variant>
#include <vector>

#include "imaging/sips/arguments.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/look/container_facts.h"

namespace {

using namespace sorvik::sips;

Status run(const std::vector<std::string_view>& arguments) {
    const Request request = parseArguments(arguments);
    const auto* describe = std::get_if<DescribeRequest>(&request);
    if (describe == nullptr) {
        throw Failure(Status::badUsage, "usage: sips --describe FILE");
    }
    announce(containerFacts(InputFile(describe->path)));
    return Status::finished;
}

}  // namespace

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN);
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const Status status = reportingFailures(STDERR_FILENO, [&] { return run(arguments); });
    // Taking the libraries down again serves nobody.
    ::_exit(static_cast<int>(status));
}
