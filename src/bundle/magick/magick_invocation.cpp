#include "bundle/magick/magick_invocation.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>

namespace sorvik::bundle {

namespace {

// By absolute path: PATH may name other programs of these names first.
constexpr const char* convertProgram = "/usr/bin/convert";
constexpr const char* identifyProgram = "/usr/bin/identify";

constexpr int statusNotExecutable = 126;
constexpr int statusNotFound = 127;

constexpr std::string_view excludedChunks = "png:exclude-chunk=";

/// Version 6 keeps only the last define of a name, version 7 adds them up: several become one list.
std::vector<std::string> withOneChunkList(const std::vector<std::string>& arguments) {
    std::vector<std::string> merged;
    std::optional<std::size_t> list;
    for (const std::string& argument : arguments) {
        const bool excludes = argument.starts_with(excludedChunks) && !merged.empty() && merged.back() == "-define";
        if (excludes && list) {
            merged.pop_back();
            merged[*list].append(1, ',').append(argument, excludedChunks.size());
            continue;
        }
        if (excludes) {
            list = merged.size();
        }
        merged.push_back(argument);
    }
    return merged;
}

}  // namespace

MagickInvocation magickInvocation(const std::vector<std::string>& arguments) {
    const bool identifies = !arguments.empty() && arguments.front() == "identify";
    const char* program = identifies ? identifyProgram : convertProgram;

    MagickInvocation invocation{program, {program}};
    const std::vector<std::string> merged = withOneChunkList(arguments);
    std::copy(merged.begin() + (identifies ? 1 : 0), merged.end(), std::back_inserter(invocation.arguments));
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
