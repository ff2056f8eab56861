// A tool at its worst, for the tests of those who run tools: one verb a fault.

#include <unistd.h>
#include <algorithm>
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

const std::string block(1 << 16, 'x');

void pauseFor(const std::string& milliseconds) { usleep(static_cast<useconds_t>(std::stoul(milliseconds)) * 1000); }

// Each argument, with a NUL behind it.
int echo(const Arguments& arguments) {
    for (const std::string& argument : arguments) {
        std::cout << argument << '\0';
    }
    return 0;
}

// So many bytes on standard error.
int flood(const Arguments& arguments) {
    for (auto left = std::stoul(arguments.at(0)); left > 0;) {
        left -= std::fwrite(block.data(), 1, std::min(left, block.size()), stderr);
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

// Closes its streams and goes on for so many milliseconds.
int deaf(const Arguments& arguments) {
    for (int stream = 0; stream < 3; ++stream) {
        close(stream);
    }
    pauseFor(arguments.at(0));
    return 7;
}

// Leaves a child that holds the streams open for so many milliseconds.
int leaveChild(const Arguments& arguments) {
    if (fork() == 0) {
        pauseFor(arguments.at(0));
    } else {
        std::cout << "left " << std::flush;
    }
    return 3;
}

// Leaves a child that floods them for so many seconds.
int leaveFlood(const Arguments& arguments) {
    if (fork() == 0) {
        alarm(static_cast<unsigned>(std::stoul(arguments.at(0))));
        while (write(STDOUT_FILENO, block.data(), block.size()) > 0) {
        }
    }
    return 3;
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
    std::string text;
    std::getline(std::cin, text);
    std::cout << text << "end";
    return 0;
}

// The open ones above the three standard ones.
int descriptors(const Arguments&) {
    for (int number = 3; number < 1024; ++number) {
        if (dup2(number, number) == number) {
            std::cout << number << ' ';
        }
    }
    return 0;
}

const std::map<std::string, std::function<int(const Arguments&)>> verbs{
    {"crash", [](const Arguments&) { return std::raise(SIGKILL); }},
    {"cwd", cwd},
    {"deaf", deaf},
    {"descriptors", descriptors},
    {"echo", echo},
    {"environment", environment},
    {"exit", [](const Arguments& arguments) { return std::stoi(arguments.at(0)); }},
    {"flood", flood},
    {"input", input},
    {"leave", leaveChild},
    {"leaveflood", leaveFlood},
    {"mixed", mixed},
    {"write", [](const Arguments& arguments) { return std::ofstream(arguments.at(0)) << "written" ? 0 : 1; }},
};

}  // namespace

int main(int argc, char** argv) {
    const Arguments words(argv + 1, argv + argc);
    return verbs.at(words.at(0))({words.begin() + 1, words.end()});
}
