#include "bundle/magick/child.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace sorvik::bundle {

namespace {

constexpr int statusOfSignals = 128;  // added to a signal's number, as a shell does
constexpr int statusNotStarted = 126;

constexpr std::array endRequests{SIGTERM, SIGINT, SIGHUP};

std::atomic<pid_t> running = 0;
std::atomic<bool> ending = false;
static_assert(std::atomic<pid_t>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void passOn(int /*signal*/) {
    ending = true;
    if (const pid_t child = running; child > 0) {
        kill(child, SIGKILL);
    }
}

sigset_t requestSet() {
    sigset_t set{};
    sigemptyset(&set);
    for (const int request : endRequests) {
        sigaddset(&set, request);
    }
    return set;
}

void redirect(bool speaks, const std::string& messages) {
    if (!messages.empty()) {
        const int file = open(messages.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        dup2(file, STDERR_FILENO);
    }
    if (!speaks) {
        dup2(STDERR_FILENO, STDOUT_FILENO);
    }
}

int waitFor(pid_t child) {
    int state = 0;
    while (waitpid(child, &state, 0) < 0) {
        if (errno != EINTR) {
            return statusNotStarted;
        }
    }
    return WIFEXITED(state) ? WEXITSTATUS(state) : statusOfSignals + WTERMSIG(state);
}

bool isPlain(const std::string& directory) {
    return directory.starts_with('/') && directory.find_first_of("[]*?{}%") == std::string::npos;
}

std::string makeFolderIn(const std::string& directory) {
    std::string path = directory + "/sorvik_magick_XXXXXX";
    return isPlain(directory) && mkdtemp(path.data()) != nullptr ? path : std::string();
}

}  // namespace

PrivateFolder::PrivateFolder() {
    std::error_code ignored;
    const std::string configured = std::filesystem::temp_directory_path(ignored).string();
    for (const std::string& directory : {configured, std::string("/tmp"), std::string("/var/tmp")}) {
        if (path_.empty()) {
            path_ = makeFolderIn(directory);
        }
    }
}

PrivateFolder::~PrivateFolder() {
    if (made()) {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
}

void PrivateFolder::becomeTemporaryDirectory() const {
    for (const char* name : {"TMPDIR", "TEMP", "TMP", "MAGICK_TMPDIR", "MAGICK_TEMPORARY_PATH"}) {
        setenv(name, path_.c_str(), 1);  // NOLINT(concurrency-mt-unsafe): the launcher has one thread
    }
}

void endWithChildren() {
    struct sigaction action {};
    action.sa_handler = &passOn;
    action.sa_mask = requestSet();
    for (const int request : endRequests) {
        sigaction(request, &action, nullptr);
    }
}

bool askedToEnd() { return ending; }

int runTool(const MagickInvocation& tool, bool speaks, const std::string& messages) {
    if (askedToEnd()) {
        return statusNotStarted;
    }
    const sigset_t requests = requestSet();
    sigset_t before{};
    pthread_sigmask(SIG_BLOCK, &requests, &before);  // a request must find the child's number once there is a child
    const pid_t self = getpid();
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != self) {
            _exit(statusNotStarted);
        }
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        redirect(speaks, messages);
        execute(tool);
    }
    running = child;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    const int status = child > 0 ? waitFor(child) : statusNotStarted;
    running = 0;
    return status;
}

}  // namespace sorvik::bundle
