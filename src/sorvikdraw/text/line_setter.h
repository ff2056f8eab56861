#pragma once

#include <pango/pango.h>

#include <memory>
#include <string>

#include "sorvikdraw/text/glyph_pen.h"
#include "sorvikdraw/text/outline.h"

namespace sorvik::draw::text {

/// Sets text on one line with the fonts of the system.
class LineSetter {
public:
    LineSetter();

    /// `text` is UTF-8; whatever would break or stop the line counts as a blank. Left to right is the direction where
    /// the text has none. The em is 1 long. Nothing where the system has no fonts.
    [[nodiscard]] Outline outline(std::string text, const std::string& families) const;

private:
    struct Unref {
        void operator()(void* object) const { g_object_unref(object); }
    };

    void draw(Outline& outline, const std::string& text) const;
    float draw(Outline& outline, const std::string& text, const PangoItem& item, float x) const;

    GlyphPen pen_;
    std::unique_ptr<PangoFontMap, Unref> fontMap_;
    std::unique_ptr<PangoContext, Unref> context_;
};

}  // namespace sorvik::draw::text
