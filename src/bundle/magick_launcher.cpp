// `magick` for systems that have ImageMagick 6: hands its arguments to that version's programs, with LibRaw and
// Ghostscript in front of them for what they don't read.

#include "bundle/magick/decoded_run.h"

int main(int argc, char* argv[]) {
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return sorvik::bundle::runMagick(arguments);
}
