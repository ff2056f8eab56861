#pragma once

#include <cstddef>
#include <cstdint>

/// What the engine asks of the library that knows fonts, sorvikdraw_text.so, which it loads at run time. Plain types:
/// the two share neither exceptions nor an allocator.
extern "C" {

enum SorvikTextVerb : std::uint8_t {
    sorvikTextMove,   ///< one point
    sorvikTextLine,   ///< one point
    sorvikTextCubic,  ///< three: two controls and the end
    sorvikTextClose,  ///< none
};

/// Numbers are x, y for each point; y grows downward.
struct SorvikTextOutline {
    const SorvikTextVerb* verbs;
    std::size_t verbCount;
    const float* numbers;
    std::size_t numberCount;
    void* owner;
};

enum SorvikTextStatus : std::int32_t {
    sorvikTextDone,
    sorvikTextTooLong,  ///< the outline has more points than are allowed
    sorvikTextFailed,   ///< memory ran out
};

/// Sets `length` bytes of UTF-8 on one line from (0, 0), in the first of `families` (a list with commas) that is
/// installed, its em 1 long. On success the outline is the caller's to free. Not to be called twice at a time.
using SorvikTextOutlineFunction = SorvikTextStatus(const char* text, std::size_t length, const char* families,
                                                   SorvikTextOutline* outline);
using SorvikTextFreeFunction = void(SorvikTextOutline* outline);

[[gnu::visibility("default")]] SorvikTextOutlineFunction sorvikTextOutline;
[[gnu::visibility("default")]] SorvikTextFreeFunction sorvikTextFree;
}
