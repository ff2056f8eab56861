// The engine as a program: one SVG file in, one picture out.

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <string_view>
#include <vector>

#include "sorvikdraw/tool/program.h"

namespace {

/// A caller may have closed some of the three. The output would then get such a number, and warnings would go into it.
void openStandardStreams() {
    int number = 0;
    while (number >= 0 && number <= STDERR_FILENO) {
        number = ::open("/dev/null", O_RDWR);
    }
    ::close(number);
}

}  // namespace

int main(int argc, char** argv) {
    openStandardStreams();
    // A reader of warnings that has gone and a file size limit are errors of write(), not ends of the process.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    const std::vector<std::string_view> arguments(argv, argv + argc);
    return static_cast<int>(sorvik::draw::command_line::run(arguments));
}
