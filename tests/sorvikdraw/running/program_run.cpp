#include "program_run.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

namespace sorvik::draw::test {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr auto patience = 60s;
constexpr rlim_t processorSeconds = 30;
constexpr int stoppedStatus = 124;

[[noreturn]] void becomeProgram(const std::string& program, const std::vector<std::string>& arguments,
                                const fs::path& out, const fs::path& err) {
    std::vector<std::string> copies{program};
    copies.insert(copies.end(), arguments.begin(), arguments.end());
    std::vector<char*> vector;
    for (std::string& copy : copies) {
        vector.push_back(copy.data());
    }
    vector.push_back(nullptr);
    ::dup2(::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
    ::dup2(::open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
    const rlimit time{processorSeconds, processorSeconds};
    ::setrlimit(RLIMIT_CPU, &time);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::execvp(vector[0], vector.data());
    ::_exit(127);
}

/// False when the child had to be stopped.
bool waitFor(pid_t child, int& status, rusage& usage) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (::wait4(child, &status, WNOHANG, &usage) == 0) {
        if (std::chrono::steady_clock::now() > end) {
            ::kill(child, SIGKILL);
            ::wait4(child, &status, 0, &usage);
            return false;
        }
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

}  // namespace

ProgramRun runProgram(const std::string& program, const std::vector<std::string>& arguments) {
    const Folder streams;
    const fs::path out = streams / "out";
    const fs::path err = streams / "err";
    const pid_t child = ::fork();
    if (child == 0) {
        becomeProgram(program, arguments, out, err);
    }
    int status = 0;
    rusage usage{};
    ProgramRun run;
    if (!waitFor(child, status, usage)) {
        run.status = stoppedStatus;
    } else {
        run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    run.output = contentsOf(out);
    run.error = contentsOf(err);
    run.processorSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    run.peakKilobytes = usage.ru_maxrss;
    return run;
}

std::string drawingTool() {
    const char* bundle = std::getenv("SORVIK_BUNDLE");
    return std::string(bundle == nullptr ? "." : bundle) + "/Contents/Resources/sorvikdraw";
}

Folder::Folder() {
    std::string pattern = (fs::temp_directory_path() / "draw-test-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
}

Folder::~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string contentsOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const fs::path& file, std::string_view contents) {
    std::ofstream(file, std::ios::binary).write(contents.data(), static_cast<std::streamsize>(contents.size()));
}

}  // namespace sorvik::draw::test
