#include <cmath>

#include "imaging/sips/failure.h"
#include "imaging/sips/look/container_facts.h"
#include "imaging/sips/look/pdf_outline.h"

namespace sorvik::sips {

namespace {

std::uint64_t side(double points) {
    constexpr double largest = 1e9;
    const double rounded = std::round(points);
    return rounded >= 1 && rounded <= largest ? static_cast<std::uint64_t>(rounded) : 1;
}

}  // namespace

PictureFacts pdfFacts(std::span<const std::byte> bytes) {
    const PdfOutline outline = outlineOf(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    switch (outline.opening) {
        case PdfOutline::Opening::asksForPassword:
            throw Failure(Status::failed, "the PDF asks for a password");
        case PdfOutline::Opening::failed:
            throw Failure(Status::failed, "damaged picture");
        case PdfOutline::Opening::done:
            break;
    }
    PictureFacts facts{"pdf", side(outline.width), side(outline.height), outline.pages};
    facts.extras = outline.extras;
    facts.whole = outline.sound;
    return facts;
}

}  // namespace sorvik::sips
