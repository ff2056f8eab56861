#include "imaging/sips/jpeg_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/jpeg_errors.h"
#include "imaging/sips/photoshop_block.h"

namespace sorvik::sips {

namespace {

using namespace std::string_view_literals;

/// libjpeg's destination manager in front of a sink.
class SinkDestination {
public:
    explicit SinkDestination(codecs::ByteSink& sink) : sink_(sink) {
        manager_.init_destination = [](j_compress_ptr info) { rewind(info); };
        manager_.empty_output_buffer = [](j_compress_ptr info) {
            handOn(info, bufferSize);
            rewind(info);
            return boolean{TRUE};
        };
        manager_.term_destination = [](j_compress_ptr info) { handOn(info, bufferSize - info->dest->free_in_buffer); };
    }

    void attach(jpeg_compress_struct& info) {
        info.dest = &manager_;
        info.client_data = this;
    }

private:
    static constexpr std::size_t bufferSize = 0x10000;

    static SinkDestination& self(j_compress_ptr info) { return *static_cast<SinkDestination*>(info->client_data); }
    static void rewind(j_compress_ptr info) {
        info->dest->next_output_byte = reinterpret_cast<JOCTET*>(self(info).buffer_.data());
        info->dest->free_in_buffer = bufferSize;
    }
    static void handOn(j_compress_ptr info, std::size_t count) {
        self(info).sink_.write(std::span(self(info).buffer_).first(count));
    }

    codecs::ByteSink& sink_;
    jpeg_destination_mgr manager_{};
    std::array<std::byte, bufferSize> buffer_{};
};

struct Compressor {
    Compressor() {
        info.err = throwingErrors(errors);
        jpeg_create_compress(&info);
    }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;
    ~Compressor() { jpeg_destroy_compress(&info); }

    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
};

class JpegWriter final : public codecs::RowWriter {
public:
    JpegWriter(codecs::ByteSink& sink, const codecs::PixelLayout& layout, const codecs::PictureMetadata& metadata,
               const JpegOptions& options)
        : destination_(sink) {
        if (layout.width > JPEG_MAX_DIMENSION || layout.height > JPEG_MAX_DIMENSION) {
            throw Failure(Status::tooLarge, "the picture is too large for JPEG");
        }
        destination_.attach(info_);
        configure(layout, metadata, options);
        jpeg_start_compress(&info_, TRUE);
        writeMetadata(metadata);
    }

    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override {
        for (std::uint32_t i = 0; i < count; ++i) {
            auto* row = reinterpret_cast<JSAMPROW>(const_cast<std::byte*>(rows + i * stride));
            jpeg_write_scanlines(&info_, &row, 1);
        }
    }

    void finish() override { jpeg_finish_compress(&info_); }

private:
    void configure(const codecs::PixelLayout& layout, const codecs::PictureMetadata& metadata,
                   const JpegOptions& options) {
        info_.image_width = layout.width;
        info_.image_height = layout.height;
        info_.input_components = layout.channels;
        info_.in_color_space = layout.channels == 1 ? JCS_GRAYSCALE : JCS_RGB;
        jpeg_set_defaults(&info_);
        jpeg_set_quality(&info_, options.quality, TRUE);
        const int luma = options.fullChroma || layout.channels == 1 ? 1 : 2;
        info_.comp_info[0].h_samp_factor = luma;
        info_.comp_info[0].v_samp_factor = luma;
        const auto density = [](double dots) { return static_cast<UINT16>(std::clamp(std::lround(dots), 1L, 65535L)); };
        if (metadata.dotsPerInchX > 0 && metadata.dotsPerInchY > 0) {
            info_.density_unit = 1;
            info_.X_density = density(metadata.dotsPerInchX);
            info_.Y_density = density(metadata.dotsPerInchY);
        }
    }

    void writeMetadata(const codecs::PictureMetadata& metadata) {
        writeSegment(JPEG_APP0 + 1, "Exif\0\0"sv, metadata.exif);
        writeSegment(JPEG_APP0 + 1, "http://ns.adobe.com/xap/1.0/\0"sv, metadata.xmp);
        if (!metadata.iptc.empty()) {
            writeSegment(JPEG_APP0 + 13, {}, photoshopBlockOf(metadata.iptc));
        }
        if (!metadata.icc.empty()) {
            jpeg_write_icc_profile(&info_, reinterpret_cast<const JOCTET*>(metadata.icc.data()),
                                   static_cast<unsigned>(metadata.icc.size()));
        }
    }

    void writeSegment(int marker, std::string_view mark, const std::vector<std::byte>& content) {
        constexpr std::size_t largestSegment = 65533;
        if (content.empty() || mark.size() + content.size() > largestSegment) {
            return;
        }
        std::string segment(mark);
        segment.append(textOf(content));
        jpeg_write_marker(&info_, marker, reinterpret_cast<const JOCTET*>(segment.data()),
                          static_cast<unsigned>(segment.size()));
    }

    SinkDestination destination_;
    Compressor compressor_;
    jpeg_compress_struct& info_ = compressor_.info;
};

}  // namespace

std::unique_ptr<codecs::RowWriter> makeJpegWriter(codecs::ByteSink& sink, const codecs::PixelLayout& layout,
                                                  const codecs::PictureMetadata& metadata, const JpegOptions& options) {
    return std::make_unique<JpegWriter>(sink, layout, metadata, options);
}

}  // namespace sorvik::sips
