#include "sorvikdraw/text/text_module.h"

#include <memory>
#include <new>
#include <string>

#include "sorvikdraw/text/line_setter.h"

using sorvik::draw::text::LineSetter;
using sorvik::draw::text::Outline;

SorvikTextStatus sorvikTextOutline(const char* text, std::size_t length, const char* families,
                                   SorvikTextOutline* outline) try {
    static const LineSetter setter;
    auto made = std::make_unique<const Outline>(setter.outline({text, length}, families));
    if (made->isTooLong()) {
        return sorvikTextTooLong;
    }
    *outline = {made->verbs().data(), made->verbs().size(), made->numbers().data(), made->numbers().size(), nullptr};
    outline->owner = const_cast<Outline*>(made.release());
    return sorvikTextDone;
} catch (const std::bad_alloc&) {
    return sorvikTextFailed;
}

void sorvikTextFree(SorvikTextOutline* outline) {
    const std::unique_ptr<const Outline> owner(static_cast<const Outline*>(outline->owner));
    *outline = {};
}
