// Bytes of a document all the way to pictures and a page.

#include <cstdint>
#include <optional>
#include <string_view>

#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/engine/svg.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using sorvik::draw::SVG;
    const std::optional<SVG> svg = SVG::loadData({reinterpret_cast<const char*>(data), size});
    if (!svg) {
        return 0;
    }
    for (const auto draw :
         {+[](const SVG& small) {
              return small.pngData(1, {1, 1, 1, 1});
          },
          +[](const SVG& small) { return small.jpegData(2); }, +[](const SVG& small) { return small.pdfData(); }}) {
        try {
            if (draw(svg->sized({48, 48})).empty()) {
                __builtin_trap();
            }
        } catch (const sorvik::draw::DrawingError&) {
            continue;  // beyond a limit
        }
    }
    return 0;
}
