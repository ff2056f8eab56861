#include "sorvikdraw/tool/help_text.h"

#include <cstddef>
#include <string_view>

#include "sorvikdraw/tool/modifier.h"

namespace sorvik::draw::command_line {
namespace {

constexpr std::string_view head = R"(Usage: sorvikdraw INPUT --format FORMAT [OPTION...]

Draws an SVG file as one picture or page.

Formats:
  jpeg       JPEG of the best quality, on white
  pdf        one page, vectors as vectors
  png        PNG, transparent where nothing is drawn
  swift      source code that draws the picture (not built yet)
  sfsymbol   a symbol template (not built yet)

Options:
)";

constexpr std::string_view tail = R"(  --help
      Print this text and end.

Without --output the result lies beside the input, under its name with the
format's extension (.jpg for jpeg), "@2x" or "@3x" before it for a scaled PNG.
A file that stands there is replaced, but only by a finished one.

Examples:
  sorvikdraw logo.svg --format png --scale 2x        makes logo@2x.png
  sorvikdraw logo.svg --format jpeg --size 640x480   makes logo.jpg
  sorvikdraw logo.svg --format png --insets 8,8,8,8  with a margin of 8 units
  sorvikdraw logo.svg --format pdf --output /tmp/page.pdf

Exit status: 0 when the output is written, 1 when that failed, 2 for bad usage;
a failure is one line on standard error.
)";

void append(std::string& text, const ModifierRow& row) {
    text.append("  --").append(row.name);
    if (!row.otherName.empty()) {
        text.append(", --").append(row.otherName);
    }
    if (!row.value.empty()) {
        text.append(" ").append(row.value);
    }
    text.append("\n      ").append(row.help).append("\n");
}

}  // namespace

std::string helpText() {
    std::string text(head);
    for (const ModifierRow& row : modifiers) {
        append(text, row);
    }
    return text.append(tail);
}

}  // namespace sorvik::draw::command_line
