#include "imaging/sips/look/pdf_outline.h"

#include <cmath>
#include <new>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

namespace sorvik::sips {

namespace {

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

void describe(QPDF& pdf, PdfOutline& outline) {
    const auto& pages = pdf.getAllPages();
    if (pages.empty()) {
        return;
    }
    const auto box = QPDFPageObjectHelper(pages.front()).getCropBox().getArrayAsRectangle();
    // Every object is looked up once: a damaged one shows nowhere else.
    static_cast<void>(pdf.getAllObjects());
    outline.pages = pages.size();
    outline.width = std::abs(box.urx - box.llx);
    outline.height = std::abs(box.ury - box.lly);
    outline.extras = hasExtras(pdf);
    outline.sound = !pdf.anyWarnings();
    outline.opening = PdfOutline::Opening::done;
}

}  // namespace

PdfOutline outlineOf(const char* bytes, std::size_t size) {
    PdfOutline outline;
    try {
        QPDF pdf;
        pdf.setSuppressWarnings(true);
        pdf.processMemoryFile("pdf", bytes, size);
        describe(pdf, outline);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const QPDFExc& error) {
        const bool locked = error.getErrorCode() == qpdf_e_password;
        outline.opening = locked ? PdfOutline::Opening::asksForPassword : PdfOutline::Opening::failed;
    } catch (const std::exception&) {
        outline.opening = PdfOutline::Opening::failed;
    }
    return outline;
}

}  // namespace sorvik::sips
