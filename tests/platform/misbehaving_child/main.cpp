// A tool at its worst, for the tests of those who run tools: one verb a fault.
//
//   echo ARGUMENT...      the arguments, each with a NUL behind it
//   exit STATUS
//   crash
//   flood BYTES           on standard error, all of one kind
//   mixed                 "out" and "err" in turn on both streams
//   deaf MILLISECONDS     closes its streams and goes on, then exits with 7
//   fork MILLISECONDS     leaves a child that holds the streams open
//   forkflood MILLISECONDS  leaves a child that floods them
//   write PATH            a file, and exits with 0
//   environment NAME      its value
//   cwd
//   input                 what it reads from standard input, and "end"
//   descriptors           the open ones above the three standard ones

#include <sys/types.h>
#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

using Arguments = std::vector<std::string>;

void pauseFor(const std::string& milliseconds) { usleep(static_cast<useconds_t>(std::stoul(milliseconds)) * 1000); }

int echo(const Arguments& arguments) {
    for (const std::string& argument : arguments) {
        std::cout << argument << '\0';
    }
    return 0;
}

int crash(const Arguments&) { return std::raise(SIGKILL); }

int flood(const Arguments& arguments) {
    const std::string block(1 << 16, 'x');
    for (auto left = std::stoull(arguments.at(0)); left > 0;) {
        const auto count = std::min<unsigned long long>(left, block.size());
        std::fwrite(block.data(), 1, count, stderr);
        left -= count;
    }
    std::fputs("the end", stderr);
    return 0;
}

int mixed(const Arguments&) {
    for (int i = 0; i < 3; ++i) {
        std::cout << "out" << std::flush;
        std::cerr << "err" << std::flush;
    }
    return 0;
}

int deaf(const Arguments& arguments) {
    for (int stream = 0; stream < 3; ++stream) {
        close(stream);
    }
    pauseFor(arguments.at(0));
    return 7;
}

int leaveChild(const Arguments& arguments) {
    if (fork() == 0) {
        pauseFor(arguments.at(0));
    } else {
        std::cout << "left " << std::flush;
    }
    return 3;
}

int leaveFloodingChild(const Arguments& arguments) {
    if (fork() == 0) {
        alarm(static_cast<unsigned>(std::stoul(arguments.at(0)) / 1000));
        const std::string block(1 << 16, 'y');
        while (write(STDOUT_FILENO, block.data(), block.size()) > 0) {
        }
    }
    return 3;
}

int writeFile(const Arguments& arguments) {
    std::ofstream(arguments.at(0)) << "written";
    return 0;
}

int environment(const Arguments& arguments) {
    const char* value = std::getenv(arguments.at(0).c_str());
    std::cout << (value != nullptr ? value : "(none)");
    return 0;
}

int cwd(const Arguments&) {
    std::cout << std::filesystem::current_path().native();
    return 0;
}

int input(const Arguments&) {
    std::cout << std::cin.rdbuf();
    std::cout.clear();  // an empty input counts as a failure of the output
    std::cout << "end";
    return 0;
}

int descriptors(const Arguments&) {
    for (int number = 3; number < 1024; ++number) {
        if (dup2(number, number) == number) {
            std::cout << number << ' ';
        }
    }
    return 0;
}

const std::map<std::string, std::function<int(const Arguments&)>> verbs{
    {"echo", echo},
    {"exit", [](const Arguments& arguments) { return std::stoi(arguments.at(0)); }},
    {"crash", crash},
    {"flood", flood},
    {"mixed", mixed},
    {"deaf", deaf},
    {"fork", leaveChild},
    {"forkflood", leaveFloodingChild},
    {"write", writeFile},
    {"environment", environment},
    {"cwd", cwd},
    {"input", input},
    {"descriptors", descriptors},
};

}  // namespace

int main(int argc, char** argv) {
    const Arguments words(argv + 1, argv + argc);
    return verbs.at(words.at(0))({words.begin() + 1, words.end()});
}
