#include "sorvikdraw/text/line_setter.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangoft2.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "sorvikdraw/text/font_families.h"

namespace sorvik::draw::text {
namespace {

// Fonts are asked for in one size whatever the text's: sizes would cost memory each, and only the scale differs.
constexpr int emInPangoUnits = 1000 * PANGO_SCALE;
constexpr float ofEm = 1.0F / static_cast<float>(emInPangoUnits);

struct FreeDescription {
    void operator()(PangoFontDescription* description) const { pango_font_description_free(description); }
};
struct FreeGlyphs {
    void operator()(PangoGlyphString* glyphs) const { pango_glyph_string_free(glyphs); }
};
struct FreeItem {
    void operator()(PangoItem* item) const { pango_item_free(item); }
};
struct FreeList {
    void operator()(GList* list) const { g_list_free(list); }
};
struct FreeAttributes {
    void operator()(PangoAttrList* attributes) const { pango_attr_list_unref(attributes); }
};

// Pango ends the process where there is no font at all.
bool systemHasFonts() {
    const FcFontSet* const fonts = FcConfigGetFonts(nullptr, FcSetSystem);
    return fonts != nullptr && fonts->nfont > 0;
}

std::string onOneLine(std::string text) {
    if (g_utf8_validate_len(text.data(), text.size(), nullptr) == FALSE) {
        const std::unique_ptr<char, decltype(&g_free)> valid(
            g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), g_free);
        text = valid.get();
    }
    std::ranges::replace_if(
        text, [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }, ' ');
    return text;
}

// That of the first letter whose script has one.
PangoDirection directionOf(const std::string& text) {
    hb_unicode_funcs_t* const unicode = hb_unicode_funcs_get_default();
    for (const char* at = text.data(); at != text.data() + text.size(); at = g_utf8_next_char(at)) {
        const hb_script_t script = hb_unicode_script(unicode, g_utf8_get_char(at));
        if (script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED && script != HB_SCRIPT_UNKNOWN) {
            const bool isReversed = hb_script_get_horizontal_direction(script) == HB_DIRECTION_RTL;
            return isReversed ? PANGO_DIRECTION_RTL : PANGO_DIRECTION_LTR;
        }
    }
    return PANGO_DIRECTION_LTR;
}

using Items = std::vector<std::unique_ptr<PangoItem, FreeItem>>;

// Long runs are cut, where there is a blank if possible: in a run of marks, each is compared with all before it.
int lengthOfPiece(const std::string& text, const PangoItem& item) {
    constexpr int longestPiece = 512;  // characters
    if (item.num_chars <= longestPiece) {
        return item.length;
    }
    const char* const begin = text.data() + item.offset;
    const char* const end = g_utf8_offset_to_pointer(begin, longestPiece);
    const char* const blank = g_strrstr_len(begin, end - begin, " ");
    return static_cast<int>((blank == nullptr || blank == begin ? end : blank) - begin);
}

Items itemized(PangoContext* context, const std::string& text) {
    const std::unique_ptr<PangoAttrList, FreeAttributes> noAttributes(pango_attr_list_new());
    const std::unique_ptr<GList, FreeList> found(pango_itemize_with_base_dir(
        context, directionOf(text), text.data(), 0, static_cast<int>(text.size()), noAttributes.get(), nullptr));
    Items items;
    for (const GList* each = found.get(); each != nullptr; each = each->next) {
        std::unique_ptr<PangoItem, FreeItem> rest(static_cast<PangoItem*>(each->data));
        for (int length = lengthOfPiece(text, *rest); length < rest->length; length = lengthOfPiece(text, *rest)) {
            const char* const begin = text.data() + rest->offset;
            const auto characters = static_cast<int>(g_utf8_pointer_to_offset(begin, begin + length));
            items.emplace_back(pango_item_split(rest.get(), length, characters));
        }
        items.push_back(std::move(rest));
    }
    return items;
}

// Turns every stretch of items of a level or above it around, from the highest level down to the lowest odd one.
void orderFromLeftToRight(Items& items) {
    guint8 highest = 0;
    for (const auto& item : items) {
        highest = std::max(highest, item->analysis.level);
    }
    for (int level = highest; level > 0; --level) {
        const auto isAbove = [level](const auto& item) { return item->analysis.level >= level; };
        for (auto begin = std::ranges::find_if(items, isAbove); begin != items.end();) {
            const auto end = std::find_if_not(begin, items.end(), isAbove);
            std::reverse(begin, end);
            begin = std::find_if(end, items.end(), isAbove);
        }
    }
}

}  // namespace

LineSetter::LineSetter() : fontMap_(pango_ft2_font_map_new()), context_(pango_font_map_create_context(fontMap_.get())) {
    pango_context_set_round_glyph_positions(context_.get(), FALSE);
}

Outline LineSetter::outline(std::string text, const std::string& families) const {
    Outline outline;
    text = onOneLine(std::move(text));
    if (text.empty() || !systemHasFonts()) {
        return outline;
    }
    const std::unique_ptr<PangoFontDescription, FreeDescription> font(pango_font_description_new());
    pango_font_description_set_family(font.get(), fontFamilies(families).c_str());
    pango_font_description_set_absolute_size(font.get(), emInPangoUnits);
    pango_context_set_font_description(context_.get(), font.get());
    draw(outline, text);
    return outline;
}

void LineSetter::draw(Outline& outline, const std::string& text) const {
    Items items = itemized(context_.get(), text);
    orderFromLeftToRight(items);
    float x = 0;
    for (auto item = items.begin(); item != items.end() && !outline.isTooLong(); ++item) {
        x = draw(outline, text, **item, x);
    }
}

// Gives the place behind the item.
float LineSetter::draw(Outline& outline, const std::string& text, const PangoItem& item, float x) const {
    const std::unique_ptr<PangoGlyphString, FreeGlyphs> glyphs(pango_glyph_string_new());
    pango_shape_with_flags(text.data() + item.offset, item.length, text.data(), static_cast<int>(text.size()),
                           &item.analysis, glyphs.get(), PANGO_SHAPE_NONE);
    hb_font_t* const font = item.analysis.font == nullptr ? nullptr : pango_font_get_hb_font(item.analysis.font);
    for (int i = 0; i < glyphs->num_glyphs && !outline.isTooLong(); ++i) {
        const auto& [glyph, geometry, attributes] = glyphs->glyphs[i];
        const bool isDrawn = glyph != PANGO_GLYPH_EMPTY && (glyph & PANGO_GLYPH_UNKNOWN_FLAG) == 0;
        if (isDrawn && font != nullptr) {
            pen_.draw(outline, font, glyph,
                      {x + static_cast<float>(geometry.x_offset) * ofEm, static_cast<float>(geometry.y_offset) * ofEm},
                      ofEm);
        }
        x += static_cast<float>(geometry.width) * ofEm;
    }
    return x;
}

}  // namespace sorvik::draw::text
