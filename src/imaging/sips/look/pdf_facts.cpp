#include <cmath>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include "imaging/sips/failure.h"
#include "imaging/sips/look/container_facts.h"

namespace sorvik::sips {

namespace {

std::uint64_t side(double one, double other) {
    const double points = std::round(std::abs(other - one));
    constexpr double largest = 1e9;
    return points >= 1 && points <= largest ? static_cast<std::uint64_t>(points) : 1;
}

bool hasEntries(QPDFObjectHandle object) {
    return (object.isArray() && object.getArrayNItems() > 0) || (object.isDictionary() && !object.getKeys().empty());
}

/// What a document has beside its pages and what writing it anew would leave out.
bool hasExtras(QPDF& pdf) {
    QPDFObjectHandle catalog = pdf.getRoot();
    QPDFObjectHandle form = catalog.getKey("/AcroForm");
    QPDFObjectHandle names = catalog.getKey("/Names");
    return (form.isDictionary() && (hasEntries(form.getKey("/Fields")) || form.hasKey("/XFA"))) ||
           (names.isDictionary() && names.hasKey("/EmbeddedFiles")) || hasEntries(catalog.getKey("/OCProperties")) ||
           hasEntries(catalog.getKey("/Perms")) || hasEntries(catalog.getKey("/AF")) || pdf.isEncrypted();
}

PictureFacts factsOf(QPDF& pdf) {
    const auto& pages = pdf.getAllPages();
    if (pages.empty()) {
        throw Failure(Status::failed, "a PDF without pages");
    }
    const auto box = QPDFPageObjectHelper(pages.front()).getCropBox().getArrayAsRectangle();
    // Every object is looked up once: a damaged one shows nowhere else.
    static_cast<void>(pdf.getAllObjects());
    PictureFacts facts{"pdf", side(box.llx, box.urx), side(box.lly, box.ury), pages.size()};
    facts.extras = hasExtras(pdf);
    facts.whole = !pdf.anyWarnings();
    return facts;
}

}  // namespace

PictureFacts pdfFacts(std::span<const std::byte> bytes) {
    QPDF pdf;
    pdf.setSuppressWarnings(true);
    try {
        pdf.processMemoryFile("pdf", reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return factsOf(pdf);
    } catch (const QPDFExc& error) {
        if (error.getErrorCode() == qpdf_e_password) {
            throw Failure(Status::failed, "the PDF asks for a password");
        }
        throw Failure(Status::failed, "damaged picture");
    }
}

}  // namespace sorvik::sips
