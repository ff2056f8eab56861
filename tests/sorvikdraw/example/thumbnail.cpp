#include <cstdio>
#include <exception>
#include <fstream>
#include <optional>
#include <vector>

#include "sorvikdraw/engine/svg.h"

// usage: thumbnail IN.svg OUT.png
int main(int argc, char** argv) {
    using sorvik::draw::SVG;
    if (argc != 3) {
        return 2;
    }
    std::optional<SVG> svg = SVG::load(argv[1]);  // says on standard error why not
    if (!svg) {
        return 1;
    }
    svg->resize({120, 80});
    try {
        const std::vector<std::byte> png = svg->pngData(2);  // pixels a unit
        std::ofstream out(argv[2], std::ios::binary);
        out.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size())).flush();
        return out ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
