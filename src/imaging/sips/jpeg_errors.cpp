#include "imaging/sips/jpeg_errors.h"

// After jpeglib.h: message codes.
#include <jerror.h>

#include <cerrno>

#include "imaging/sips/failure.h"

namespace sorvik::sips {

namespace {

// libjpeg is C, but on the platforms supported its frames carry unwind tables.
[[noreturn]] void throwFailure(j_common_ptr info) {
    switch (info->err->msg_code) {
        case JERR_OUT_OF_MEMORY:
            throw failureOf(ENOMEM, "the picture");
        case JERR_IMAGE_TOO_BIG:
            throw Failure(Status::tooLarge, "the picture is too large");
        case JWRN_JPEG_EOF:
        case JWRN_HIT_MARKER:
        case JERR_INPUT_EOF:
        case JERR_INPUT_EMPTY:
            throw Failure(Status::failed, "truncated picture");
        case JERR_SOF_UNSUPPORTED:
        case JERR_BAD_PRECISION:
            throw Failure(Status::failed, "a kind of JPEG that can't be read");
        default:
            throw Failure(Status::failed, "damaged picture");
    }
}

void emitMessage(j_common_ptr info, int level) {
    if (level >= 0) {
        return;
    }
    switch (info->err->msg_code) {
        case JWRN_JPEG_EOF:
        case JWRN_HIT_MARKER:
        case JWRN_HUFF_BAD_CODE:
        case JWRN_ARITH_BAD_CODE:
        case JWRN_MUST_RESYNC:
            throwFailure(info);
        default:
            break;
    }
}

void outputMessage(j_common_ptr /*info*/) {}

}  // namespace

jpeg_error_mgr* throwingErrors(jpeg_error_mgr& manager) {
    jpeg_std_error(&manager);
    manager.error_exit = throwFailure;
    manager.emit_message = emitMessage;
    manager.output_message = outputMessage;
    return &manager;
}

}  // namespace sorvik::sips
