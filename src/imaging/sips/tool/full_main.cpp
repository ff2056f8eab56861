// What `sips` becomes when a job takes more than our own codecs.

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <string_view>
#include <variant>
#include <vector>

#include "imaging/sips/arguments.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/full/carry_metadata.h"
#include "imaging/sips/full/full_route.h"
#include "imaging/sips/full/keep_looks_fully.h"

namespace {

using namespace sorvik::sips;

/// The libraries print what they think of a file; standard error is for our one sentence. Gives a
/// descriptor for that.
int silenceLibraries() {
    const int own = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    if (const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC); nowhere >= 0) {
        ::dup2(nowhere, STDERR_FILENO);
    }
    return own;
}

struct Runner {
    Status operator()(const ConvertRequest& request) const { return convertFully(request); }
    Status operator()(const CarryRequest& request) const { return carryMetadata(request); }
    Status operator()(const KeepLooksRequest& request) const { return keepLooksFully(request); }
    template <typename Other>
    Status operator()(const Other& /*request*/) const {
        throw Failure(Status::badUsage, "sips-full does no such job");
    }
};

}  // namespace

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN);
    const int standardError = silenceLibraries();
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const Status status =
        reportingFailures(standardError, [&] { return std::visit(Runner(), parseArguments(arguments)); });
    // The file is closed; taking a hundred libraries down again serves nobody.
    ::_exit(static_cast<int>(status));
}
