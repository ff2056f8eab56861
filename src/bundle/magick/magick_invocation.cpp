#include "bundle/magick/magick_invocation.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iterator>
#include <system_error>

namespace sorvik::bundle {

namespace {

// By absolute path: PATH may name other programs of these names first.
constexpr const char* convertProgram = "/usr/bin/convert";
constexpr const char* identifyProgram = "/usr/bin/identify";

constexpr int statusNotExecutable = 126;
constexpr int statusNotFound = 127;

}  // namespace

MagickInvocation magickInvocation(const std::vector<std::string>& arguments) {
    const bool identifies = !arguments.empty() && arguments.front() == "identify";
    const char* program = identifies ? identifyProgram : convertProgram;

    MagickInvocation invocation{program, {program}};
    std::copy(arguments.begin() + (identifies ? 1 : 0), arguments.end(), std::back_inserter(invocation.arguments));
    return invocation;
}

void execute(const MagickInvocation& invocation) {
    std::vector<char*> argv;
    argv.reserve(invocation.arguments.size() + 1);
    for (const std::string& argument : invocation.arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));  // execv writes to none of them
    }
    argv.push_back(nullptr);

    execv(invocation.program.c_str(), argv.data());
    const int error = errno;
    const std::string line =
        "magick: " + invocation.program + " can't be started: " + std::generic_category().message(error) + "\n";
    std::fputs(line.c_str(), stderr);
    _exit(error == ENOENT ? statusNotFound : statusNotExecutable);
}

}  // namespace sorvik::bundle
