#include "tool.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <iterator>

namespace sorvik::sips::test {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void becomeTool(const std::vector<std::string>& arguments, std::size_t largestFile, const fs::path& out,
                             const fs::path& err) {
    std::string program = SORVIK_SIPS;
    std::vector<std::string> copies = arguments;
    std::vector<char*> vector{program.data()};
    for (std::string& copy : copies) {
        vector.push_back(copy.data());
    }
    vector.push_back(nullptr);
    ::dup2(::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
    ::dup2(::open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
    if (largestFile != 0) {
        const rlimit limit{largestFile, largestFile};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ::execv(vector[0], vector.data());
    ::_exit(127);
}

}  // namespace

Outcome runSips(const std::vector<std::string>& arguments, std::size_t largestFile) {
    const Folder streams;
    const fs::path out = streams / "out";
    const fs::path err = streams / "err";
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        becomeTool(arguments, largestFile, out, err);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    Outcome outcome;
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    outcome.output = contentsOf(out);
    outcome.error = contentsOf(err);
    outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    outcome.peakKilobytes = usage.ru_maxrss;
    return outcome;
}

Outcome convert(const fs::path& input, const fs::path& output, const std::string& format,
                const std::vector<std::string>& settings) {
    std::vector<std::string> arguments{"-s", "format", format};
    arguments.insert(arguments.end(), settings.begin(), settings.end());
    arguments.insert(arguments.end(), {input.string(), "--out", output.string()});
    return runSips(arguments);
}

Folder::Folder() {
    std::string pattern = (fs::temp_directory_path() / "sips-test-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
}

Folder::~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::size_t Folder::entries() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(path_), fs::directory_iterator()));
}

fs::path sample(std::string_view name) { return fs::path(SORVIK_TEST_DATA) / name; }

std::string contentsOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write(const fs::path& file, std::string_view contents) {
    std::ofstream(file, std::ios::binary).write(contents.data(), static_cast<std::streamsize>(contents.size()));
}

bool isOneSentence(std::string_view error) {
    return error.starts_with("sips: ") && error.find('\n') == error.size() - 1 && error.size() < 120;
}

}  // namespace sorvik::sips::test
