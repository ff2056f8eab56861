#pragma once

#include <cstddef>

// Stands alone and needs no more than C++17: clang 16 can't compile libqpdf's headers as C++20.

namespace sorvik::sips {

/// What libqpdf tells of a PDF.
struct PdfOutline {
    enum class Opening { done, asksForPassword, failed };

    Opening opening = Opening::failed;
    std::size_t pages = 0;
    double width = 0;     ///< points, of the first page's crop box
    double height = 0;    ///< likewise
    bool extras = false;  ///< forms, attachments, layers, signatures, restrictions
    bool sound = false;   ///< nothing had to be repaired, and every object can be read
};

/// Throws nothing but std::bad_alloc.
[[nodiscard]] PdfOutline outlineOf(const char* bytes, std::size_t size);

}  // namespace sorvik::sips
