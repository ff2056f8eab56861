#include "imaging/sips/direct_route.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

#include "codecs/bmp_writer.h"
#include "codecs/intermediate_png.h"
#include "codecs/pdf_picture_writer.h"
#include "codecs/png_writer.h"
#include "codecs/samples.h"
#include "imaging/sips/completeness.h"
#include "imaging/sips/content_kind.h"
#include "imaging/sips/fitting_writer.h"
#include "imaging/sips/jpeg_decoder.h"
#include "imaging/sips/jpeg_writer.h"
#include "imaging/sips/limits.h"
#include "imaging/sips/opacity_watch.h"
#include "imaging/sips/png_decoder.h"
#include "imaging/sips/tiff_writer.h"
#include "imaging/sips/upright.h"

namespace sorvik::sips {

namespace {

std::optional<PictureSource> intermediateSource(const InputFile& input) {
    std::shared_ptr<codecs::IntermediatePng> png = codecs::IntermediatePng::open(input.descriptor());
    if (!png) {
        return std::nullopt;
    }
    PictureSource source{png->layout(), png->metadata(), false, {}};
    source.pump = [png](codecs::RowWriter& writer) {
        std::vector<std::byte> row(png->layout().rowBytes());
        for (std::uint32_t y = 0; y < png->layout().height; ++y) {
            png->readRow(y, row.data());
            writer.writeRows(row.data(), row.size(), 1);
        }
    };
    return source;
}

PictureSource jpegSource(const std::shared_ptr<JpegDecoder>& decoder) {
    PictureSource source{decoder->layout(), decoder->metadata(), decoder->fullChroma(), {}};
    if (!codecs::profileFits(source.metadata.icc, source.layout)) {
        source.metadata.icc.clear();
    }
    source.pump = [decoder](codecs::RowWriter& writer) { decoder->pump(writer); };
    return source;
}

PictureSource pngSource(const std::shared_ptr<PngDecoder>& decoder) {
    PictureSource source{decoder->layout(), decoder->metadata(), false, {}};
    if (!codecs::profileFits(source.metadata.icc, source.layout)) {
        source.metadata.icc.clear();
    }
    source.pump = [decoder](codecs::RowWriter& writer) { decoder->pump(writer); };
    return source;
}

std::optional<PictureSource> sourceOfPng(const InputFile& input) {
    if (auto source = intermediateSource(input)) {
        return source;
    }
    if (isCutOff(ContentKind::png, input.bytes())) {
        throw Failure(Status::failed, "truncated picture");
    }
    requireDecodable(*claimedSize(ContentKind::png, input.bytes()), Decoding::streamed);
    const auto decoder = std::make_shared<PngDecoder>(input.bytes());
    return decoder->readable() ? std::optional(pngSource(decoder)) : std::nullopt;
}

/// Rows as the target takes them.
PictureSource fittedTo(const FormatRow& target, PictureSource source) {
    const codecs::PixelLayout from = source.layout;
    const codecs::PixelLayout to = fitted(from, target.alpha, target.deep);
    if (to == from) {
        return source;
    }
    source.layout = to;
    source.pump = [pump = source.pump, from, to](codecs::RowWriter& writer) {
        FittingWriter fitting(writer, from, to);
        pump(fitting);
    };
    return source;
}

bool keepsColours(const ConvertRequest& request, const PictureSource& source) {
    const bool profileStays = rowOf(request.format).profile && !request.toSrgb;
    return profileStays || source.metadata.icc.empty();
}

bool isDirect(Format format) {
    return format == Format::jpeg || format == Format::png || format == Format::tiff || format == Format::bmp ||
           format == Format::pdf;
}

void embedJpeg(const ConvertRequest& request, const InputFile& input, const PictureSource& source) {
    OutputFile output(request.output, input.identity());
    codecs::FileSink sink(output.descriptor());
    if (request.stripMetadata) {
        codecs::writeJpegPdf(sink, source.layout, source.metadata, withoutMetadata(input.bytes()));
    } else {
        codecs::writeJpegPdf(sink, source.layout, source.metadata, input.bytes());
    }
    sink.flush();
    output.keep();
}

void writePicture(const ConvertRequest& request, const InputFile& input, const PictureSource& source) {
    OutputFile output(request.output, input.identity());
    codecs::FileSink sink(output.descriptor());
    const auto writer = makeDirectWriter(request, source, sink, output.descriptor());
    OpacityWatch watched(*writer, source.layout);
    source.pump(request.intermediate ? static_cast<codecs::RowWriter&>(watched) : *writer);
    writer->finish();
    sink.flush();
    if (request.intermediate) {
        announceContents(source.metadata, watched.sawTransparency());
    }
    output.keep();
}

}  // namespace

std::unique_ptr<codecs::RowWriter> makeDirectWriter(const ConvertRequest& request, const PictureSource& source,
                                                    codecs::ByteSink& sink, int descriptor) {
    switch (request.format) {
        case Format::jpeg:
            return makeJpegWriter(sink, source.layout, source.metadata,
                                  {request.quality.value_or(JpegOptions().quality), source.fullChroma});
        case Format::png:
            return codecs::makePngWriter(
                sink, source.layout, source.metadata,
                {request.intermediate ? codecs::PngPurpose::intermediate : codecs::PngPurpose::kept,
                 request.level.value_or(codecs::PngOptions().level)});
        case Format::tiff:
            return makeTiffWriter(sink, source.layout, source.metadata);
        case Format::bmp:
            return codecs::makeBmpWriter(descriptor, source.layout, source.metadata);
        case Format::pdf:
            return codecs::makePdfPictureWriter(sink, source.layout, source.metadata);
        default:
            return nullptr;
    }
}

void strip(codecs::PictureMetadata& metadata) {
    metadata.exif.clear();
    metadata.xmp.clear();
    metadata.iptc.clear();
}

void announceContents(const codecs::PictureMetadata& metadata, bool transparent) {
    std::string line = transparent ? "metadata: alpha" : "metadata:";
    const auto name = [&](const std::vector<std::byte>& content, const char* word) {
        line += content.empty() ? "" : word;
    };
    name(metadata.exif, " exif");
    name(metadata.icc, " icc");
    name(metadata.iptc, " iptc");
    name(metadata.xmp, " xmp");
    line += line.back() == ':' ? " none\n" : "\n";
    if (::write(STDOUT_FILENO, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        throw failureOf(errno, "standard output");
    }
}

std::optional<Status> convertDirectly(const ConvertRequest& request, const InputFile& input) {
    if (!isDirect(request.format) || !request.iconSizes.empty()) {
        return std::nullopt;
    }
    const ContentKind kind = contentKindOf(input.bytes());
    std::shared_ptr<JpegDecoder> jpeg;
    std::optional<PictureSource> source;
    if (kind == ContentKind::jpeg) {
        jpeg = std::make_shared<JpegDecoder>(input.bytes());
        source = jpeg->readable() ? std::optional(jpegSource(jpeg)) : std::nullopt;
    } else if (kind == ContentKind::png) {
        source = sourceOfPng(input);
    }
    if (!source || orientationOf(source->metadata.exif) != 1 || !keepsColours(request, *source)) {
        return std::nullopt;
    }
    if (request.stripMetadata) {
        strip(source->metadata);
    }
    if (request.format == Format::pdf && jpeg && jpeg->plainColours() && jpeg->endsProperly()) {
        embedJpeg(request, input, *source);
    } else {
        writePicture(request, input, fittedTo(rowOf(request.format), std::move(*source)));
    }
    return Status::finished;
}

}  // namespace sorvik::sips
