#include "engines/image_io_converter.h"

#include <algorithm>
#include <array>
#include <vector>

#include "engines/sips_converter.h"
#include "imaging/ico_container.h"
#include "platform/files.h"
#include "platform/log.h"
#include "services/temporary_files.h"

namespace sorvik {
namespace {

struct EncoderRow {
    const char* format;
    const char* encoder;
};

constexpr std::array encoders{
    EncoderRow{"jpg", "jpeg"},  EncoderRow{"jpeg", "jpeg"}, EncoderRow{"png", "png"}, EncoderRow{"tiff", "tiff"},
    EncoderRow{"tif", "tiff"},  EncoderRow{"bmp", "bmp"},   EncoderRow{"gif", "gif"}, EncoderRow{"ico", "ico"},
    EncoderRow{"heic", "heic"}, EncoderRow{"webp", "webp"},
};

constexpr auto fallbackEncoder = "png";
constexpr std::uint32_t largestIcon = 256;  // pixels a side

const QString tempPrefix = QStringLiteral("sorvik_ext");

void logConverter(const char* line) { logLine(QStringLiteral("[ImageIOConverter] ") + QString::fromLatin1(line)); }

/// One frame as a picture that the imaging tool reads, for as long as the object lives.
class FrameFile {
public:
    explicit FrameFile(const imaging::IcoFrame& frame)
        : file_(tempPrefix, frame.isPng ? QStringLiteral("png") : QStringLiteral("ico")) {
        if (const auto error = writeAtomically(file_.path(), imaging::standaloneFile(frame))) {
            throw ConversionError(error->description);
        }
    }

    [[nodiscard]] imaging::Picture picture() const { return {file_.path()}; }

private:
    TempFile file_;
};

/// An icon of the frame alone.
std::optional<QByteArray> encodedIcon(const ImageExtensions& extensions, const imaging::IcoFrame& frame,
                                      bool stripMetadata) {
    if (frame.width > largestIcon || frame.height > largestIcon) {
        logConverter("Failed to create image destination for data");
        return std::nullopt;
    }
    const FrameFile file(frame);
    const auto metadata = stripMetadata ? imaging::Metadata::stripped : imaging::Metadata::kept;
    return imaging::writeIco({{static_cast<int>(frame.width), static_cast<int>(frame.height),
                               extensions.pngData(file.picture(), metadata)}});
}

std::optional<QByteArray> encodeImage(const ImageExtensions& extensions, const imaging::IcoFrame& frame,
                                      const QString& format, bool stripMetadata, double quality) {
    const QString encoder = encoderFormat(format);
    if (encoder == QLatin1StringView("ico")) {
        return encodedIcon(extensions, frame, stripMetadata);
    }
    const FrameFile file(frame);
    const TempFile result(tempPrefix, sipsFormat(encoder));
    const bool jpeg = encoder == QLatin1StringView("jpeg");
    extensions.runJob(imaging::frameArguments(file.picture(), encoder, stripMetadata,
                                              jpeg ? std::optional(quality) : std::nullopt, result.path()));
    return readResult(result.path());
}

}  // namespace

QString encoderFormat(const QString& format) {
    const QString lower = format.toLower();
    const auto* row =
        std::ranges::find_if(encoders, [&](const EncoderRow& each) { return lower == QLatin1StringView(each.format); });
    return QString::fromLatin1(row == encoders.end() ? fallbackEncoder : row->encoder);
}

std::optional<QByteArray> convertICOFile(const ImageExtensions& extensions, const QString& path, const QString& format,
                                         bool stripMetadata, double quality) {
    const auto bytes = readFile(path);
    if (!bytes) {
        logConverter("Failed to create image source from ICO file");
        return std::nullopt;
    }
    std::vector<imaging::IcoFrame> frames = imaging::readIco(*bytes);
    if (frames.empty()) {
        logConverter("ICO file contains no images");
        return std::nullopt;
    }
    // The largest first, of two alike the first; one that does not decode gives way to the next.
    std::ranges::stable_sort(frames, std::ranges::greater(), &imaging::IcoFrame::area);
    for (const imaging::IcoFrame& frame : frames) {
        try {
            return encodeImage(extensions, frame, format, stripMetadata, quality);
        } catch (const ConversionError& error) {
            if (error.hasCause()) {
                throw;
            }
        }
    }
    logConverter("Could not extract any images from ICO file");
    return std::nullopt;
}

}  // namespace sorvik
