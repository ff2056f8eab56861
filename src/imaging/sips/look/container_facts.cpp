#include "imaging/sips/look/container_facts.h"

#include "imaging/sips/content_kind.h"
#include "imaging/sips/failure.h"

namespace sorvik::sips {

PictureFacts containerFacts(const InputFile& input) {
    switch (contentKindOf(input.bytes())) {
        case ContentKind::heif:
            return heifFacts(input.bytes());
        case ContentKind::pdf:
            return pdfFacts(input.bytes());
        default:
            throw Failure(Status::failed, "not a kind of picture that can be described");
    }
}

}  // namespace sorvik::sips
