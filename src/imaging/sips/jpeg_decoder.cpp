#include "imaging/sips/jpeg_decoder.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/completeness.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/jpeg_errors.h"
#include "imaging/sips/limits.h"
#include "imaging/sips/photoshop_block.h"

namespace sorvik::sips {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view exifMark = "Exif\0\0"sv;
constexpr std::string_view xmpMark = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr int exifMarker = JPEG_APP0 + 1;
constexpr int iccMarker = JPEG_APP0 + 2;
constexpr int photoshopMarker = JPEG_APP0 + 13;

// A progressive file may repeat scans without end; encoders make about ten.
constexpr int maximumScans = 200;

void limitScans(j_common_ptr info) {
    if (info->is_decompressor != 0 && reinterpret_cast<j_decompress_ptr>(info)->input_scan_number > maximumScans) {
        throw Failure(Status::failed, "damaged picture");
    }
}

void assignRest(std::vector<std::byte>& target, std::span<const std::byte> segment, std::size_t start) {
    if (target.empty()) {
        const auto rest = segment.subspan(start);
        target.assign(rest.begin(), rest.end());
    }
}

void takeSegment(codecs::PictureMetadata& metadata, int marker, std::span<const std::byte> segment) {
    if (marker == exifMarker && holdsAt(segment, 0, exifMark)) {
        assignRest(metadata.exif, segment, exifMark.size());
    } else if (marker == exifMarker && holdsAt(segment, 0, xmpMark)) {
        assignRest(metadata.xmp, segment, xmpMark.size());
    } else if (marker == photoshopMarker && metadata.iptc.empty()) {
        metadata.iptc = iptcOfPhotoshopBlock(segment);
    }
}

codecs::PictureMetadata metadataOf(jpeg_decompress_struct& info) {
    codecs::PictureMetadata metadata;
    for (auto* marker = info.marker_list; marker != nullptr; marker = marker->next) {
        takeSegment(metadata, marker->marker, std::as_bytes(std::span(marker->data, marker->data_length)));
    }
    JOCTET* profile = nullptr;
    unsigned int size = 0;
    if (jpeg_read_icc_profile(&info, &profile, &size) != 0) {
        const auto bytes = std::as_bytes(std::span(profile, size));
        metadata.icc.assign(bytes.begin(), bytes.end());
        std::free(profile);
    }
    constexpr double centimetresPerInch = 2.54;
    const double scale = info.density_unit == 1 ? 1 : info.density_unit == 2 ? centimetresPerInch : 0;
    metadata.dotsPerInchX = info.X_density * scale;
    metadata.dotsPerInchY = info.Y_density * scale;
    return metadata;
}

}  // namespace

struct JpegDecoder::State {
    explicit State(std::span<const std::byte> bytes) : jpeg(bytes) {
        info.err = throwingErrors(errors);
        jpeg_create_decompress(&info);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() { jpeg_destroy_decompress(&info); }

    std::span<const std::byte> jpeg;
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    jpeg_progress_mgr progress{};
    codecs::PixelLayout layout;
    codecs::PictureMetadata metadata;
};

JpegDecoder::JpegDecoder(std::span<const std::byte> jpeg) : state_(std::make_unique<State>(jpeg)) {
    jpeg_decompress_struct& info = state_->info;
    for (const int marker : {exifMarker, iccMarker, photoshopMarker}) {
        jpeg_save_markers(&info, marker, 0xFFFF);
    }
    jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(jpeg.data()), jpeg.size());
    jpeg_read_header(&info, TRUE);
    state_->layout = {info.image_width, info.image_height, info.num_components == 1 ? 1 : 3, 8};
    state_->metadata = metadataOf(info);
}

JpegDecoder::~JpegDecoder() = default;

bool JpegDecoder::readable() const {
    const J_COLOR_SPACE space = state_->info.jpeg_color_space;
    return space == JCS_GRAYSCALE || space == JCS_YCbCr || space == JCS_RGB;
}

bool JpegDecoder::plainColours() const {
    const J_COLOR_SPACE space = state_->info.jpeg_color_space;
    return space == JCS_GRAYSCALE || space == JCS_YCbCr;
}

bool JpegDecoder::endsProperly() const {
    constexpr std::size_t tailSize = 64;  // some cameras pad with a few zero bytes
    const auto tail = state_->jpeg.last(std::min(tailSize, state_->jpeg.size()));
    return textOf(tail).find("\xFF\xD9"sv) != std::string_view::npos;
}

const codecs::PixelLayout& JpegDecoder::layout() const { return state_->layout; }

const codecs::PictureMetadata& JpegDecoder::metadata() const { return state_->metadata; }

bool JpegDecoder::fullChroma() const {
    const jpeg_decompress_struct& info = state_->info;
    const auto samplesAlike = [&](const jpeg_component_info& component) {
        return component.h_samp_factor == info.comp_info[0].h_samp_factor &&
               component.v_samp_factor == info.comp_info[0].v_samp_factor;
    };
    return info.num_components == 3 && samplesAlike(info.comp_info[1]) && samplesAlike(info.comp_info[2]);
}

int JpegDecoder::components() const { return state_->info.num_components; }

void JpegDecoder::start() {
    jpeg_decompress_struct& info = state_->info;
    // Files of several scans keep their coefficients, 16 bits each, until the last one is read.
    const bool buffered = jpeg_has_multiple_scans(&info) != 0;
    const auto channels = static_cast<std::uint64_t>(info.num_components);
    requireDecodable({info.image_width, info.image_height, buffered ? 2 * channels : channels},
                     buffered ? Decoding::whole : Decoding::streamed);
    state_->progress.progress_monitor = limitScans;
    info.progress = &state_->progress;
    jpeg_start_decompress(&info);
}

void JpegDecoder::pump(codecs::RowWriter& writer) {
    jpeg_decompress_struct& info = state_->info;
    info.out_color_space = state_->layout.channels == 1 ? JCS_GRAYSCALE : JCS_RGB;
    start();

    constexpr std::uint32_t rowsAtATime = 16;
    const std::size_t stride = state_->layout.rowBytes();
    std::vector<std::byte> rows(stride * rowsAtATime);
    std::array<JSAMPROW, rowsAtATime> pointers{};
    for (std::size_t i = 0; i < pointers.size(); ++i) {
        pointers[i] = reinterpret_cast<JSAMPROW>(rows.data() + i * stride);
    }
    while (info.output_scanline < info.output_height) {
        std::uint32_t count = 0;
        while (count < rowsAtATime && info.output_scanline < info.output_height) {
            count += jpeg_read_scanlines(&info, pointers.data() + count, rowsAtATime - count);
        }
        writer.writeRows(rows.data(), stride, count);
    }
    jpeg_finish_decompress(&info);
}

std::vector<std::byte> withoutMetadata(std::span<const std::byte> jpeg) {
    constexpr unsigned comment = 0xFE;
    constexpr unsigned startOfScan = 0xDA;
    const ByteReader reader(jpeg, std::endian::big);
    std::vector<std::byte> kept(jpeg.begin(), jpeg.begin() + 2);
    std::size_t at = 2;
    while (at + 4 <= jpeg.size() && reader.unsignedAt(at, 1) == 0xFF) {
        const auto marker = static_cast<unsigned>(reader.unsignedAt(at + 1, 1));
        const std::size_t size = marker == 0xFF ? 1 : std::size_t{2} + reader.u16(at + 2);
        if (marker == startOfScan || size > jpeg.size() - at) {
            break;
        }
        if (marker != exifMarker && marker != photoshopMarker && marker != comment) {
            const auto segment = jpeg.subspan(at, size);
            kept.insert(kept.end(), segment.begin(), segment.end());
        }
        at += size;
    }
    kept.insert(kept.end(), jpeg.begin() + static_cast<std::ptrdiff_t>(at), jpeg.end());
    return kept;
}

}  // namespace sorvik::sips
