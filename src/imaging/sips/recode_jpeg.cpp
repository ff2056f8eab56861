#include "imaging/sips/recode_jpeg.h"

#include <cstdlib>
#include <span>

#include "imaging/sips/content_kind.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/files.h"
#include "imaging/sips/jpeg_errors.h"
#include "imaging/sips/limits.h"

namespace sorvik::sips {

namespace {

/// Both sides of libjpeg, freed whatever is thrown.
struct Codec {
    Codec() {
        source.err = throwingErrors(errors);
        target.err = &errors;
        jpeg_create_decompress(&source);
        jpeg_create_compress(&target);
    }
    ~Codec() {
        jpeg_destroy_compress(&target);
        jpeg_destroy_decompress(&source);
        std::free(bytes);  // libjpeg's buffer comes from malloc
    }
    Codec(const Codec&) = delete;
    Codec& operator=(const Codec&) = delete;

    jpeg_error_mgr errors{};
    jpeg_decompress_struct source{};
    jpeg_compress_struct target{};
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
};

/// Coefficients are of 16 bits, and the whole picture's are in memory.
void requireRoom(const jpeg_decompress_struct& info) {
    const auto components = static_cast<std::uint64_t>(info.num_components);
    requireDecodable({info.image_width, info.image_height, 2 * components}, Decoding::whole);
}

}  // namespace

void recodeJpeg(const RecodeRequest& request) {
    const InputFile from(request.from);
    if (contentKindOf(from.bytes()) != ContentKind::jpeg) {
        throw Failure(Status::failed, "only a JPEG can be recoded");
    }
    Codec codec;
    jpeg_mem_src(&codec.source, reinterpret_cast<const unsigned char*>(from.bytes().data()), from.bytes().size());
    jpeg_read_header(&codec.source, TRUE);
    requireRoom(codec.source);
    jvirt_barray_ptr* coefficients = jpeg_read_coefficients(&codec.source);
    jpeg_copy_critical_parameters(&codec.source, &codec.target);
    codec.target.optimize_coding = TRUE;
    jpeg_simple_progression(&codec.target);
    jpeg_mem_dest(&codec.target, &codec.bytes, &codec.size);
    jpeg_write_coefficients(&codec.target, coefficients);
    jpeg_finish_compress(&codec.target);
    replaceWith(request.to, std::as_bytes(std::span(codec.bytes, codec.size)));
}

}  // namespace sorvik::sips
