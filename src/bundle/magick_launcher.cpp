// `magick` for systems that have ImageMagick 6: hands its arguments to that version's programs.

#include "bundle/magick/magick_invocation.h"

int main(int argc, char* argv[]) {
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    sorvik::bundle::execute(sorvik::bundle::magickInvocation(arguments));
}
