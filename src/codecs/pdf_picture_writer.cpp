#include "codecs/pdf_picture_writer.h"

#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "codecs/deflated_rows.h"
#include "codecs/pdf_document.h"
#include "codecs/samples.h"
#include "codecs/zlib_stream.h"

namespace sorvik::codecs {
namespace {

constexpr int compressionLevel = 6;  // zlib's scale
constexpr int profileLevel = 9;      // libdeflate's scale

std::string text(std::size_t number) { return std::to_string(number); }

// A dictionary's entries, written one after the other.
class Entries {
public:
    Entries& add(std::string_view name, std::string_view value) {
        text_.append(text_.empty() ? "/" : " /").append(name).append(" ").append(value);
        return *this;
    }
    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] std::string dictionary() const { return std::string("<< ").append(text_).append(" >>"); }

private:
    std::string text_;
};

int colourChannels(const PixelLayout& layout) { return layout.channels <= 2 ? 1 : 3; }

std::string_view deviceSpace(int channels) { return channels == 1 ? "/DeviceGray" : "/DeviceRGB"; }

Entries imageEntries(const PixelLayout& layout, std::string_view colourSpace) {
    Entries entries;
    entries.add("Type", "/XObject").add("Subtype", "/Image");
    entries.add("Width", text(layout.width)).add("Height", text(layout.height));
    entries.add("ColorSpace", colourSpace);
    entries.add("BitsPerComponent", std::to_string(layout.bitsPerSample));
    return entries;
}

// What FlateDecode has to know to undo the filters of PNG.
void addPngPredictor(Entries& entries, const PixelLayout& layout, int channels) {
    Entries parameters;
    parameters.add("Predictor", "15").add("Colors", std::to_string(channels));
    parameters.add("BitsPerComponent", std::to_string(layout.bitsPerSample)).add("Columns", text(layout.width));
    entries.add("Filter", "/FlateDecode").add("DecodeParms", parameters.dictionary());
}

// The document around one image, which the caller writes under the number image(), of the colour space
// colourSpace().
class PicturePage {
public:
    PicturePage(ByteSink& sink, std::string_view version, const PixelLayout& layout, const PictureMetadata& metadata)
        : document_(sink, version), catalog_(document_.reserve()), image_(document_.reserve()) {
        writePages(layout, writeMetadata(metadata));
        writeColourSpace(layout, metadata);
    }

    [[nodiscard]] PdfDocument& document() { return document_; }
    [[nodiscard]] int image() const { return image_; }
    [[nodiscard]] const std::string& colourSpace() const { return colourSpace_; }
    void finish() { document_.finish(catalog_); }

private:
    // The entry of the catalogue, if there is any.
    std::optional<std::string> writeMetadata(const PictureMetadata& metadata) {
        if (metadata.xmp.empty()) {
            return std::nullopt;
        }
        const int number = document_.reserve();
        document_.writeStream(number, "/Type /Metadata /Subtype /XML", metadata.xmp);
        return pdfReference(number);
    }

    void writePages(const PixelLayout& layout, const std::optional<std::string>& metadata) {
        const int pages = document_.reserve();
        const int page = document_.reserve();
        const int contents = document_.reserve();
        const std::string width = text(layout.width);
        const std::string height = text(layout.height);

        Entries catalog;
        catalog.add("Type", "/Catalog").add("Pages", pdfReference(pages));
        if (metadata) {
            catalog.add("Metadata", *metadata);
        }
        document_.writeObject(catalog_, catalog.dictionary());
        document_.writeObject(pages, Entries()
                                         .add("Type", "/Pages")
                                         .add("Kids", std::string("[").append(pdfReference(page)).append("]"))
                                         .add("Count", "1")
                                         .dictionary());
        document_.writeObject(
            page,
            Entries()
                .add("Type", "/Page")
                .add("Parent", pdfReference(pages))
                .add("MediaBox", std::string("[0 0 ").append(width).append(" ").append(height).append("]"))
                .add("Resources", std::string("<< /XObject << /Picture ").append(pdfReference(image_)).append(" >> >>"))
                .add("Contents", pdfReference(contents))
                .dictionary());
        const std::string drawing =
            std::string("q ").append(width).append(" 0 0 ").append(height).append(" 0 0 cm /Picture Do Q");
        document_.writeStream(contents, "", std::as_bytes(std::span(drawing)));
    }

    void writeColourSpace(const PixelLayout& layout, const PictureMetadata& metadata) {
        const int channels = colourChannels(layout);
        colourSpace_ = deviceSpace(channels);
        if (!profileFits(metadata.icc, layout)) {
            return;
        }
        const int profile = document_.reserve();
        const std::string entries = Entries()
                                        .add("N", std::to_string(channels))
                                        .add("Alternate", colourSpace_)
                                        .add("Filter", "/FlateDecode")
                                        .text();
        document_.writeStream(profile, entries, zlibCompress(metadata.icc, profileLevel).bytes());
        colourSpace_ = std::string("[/ICCBased ").append(pdfReference(profile)).append("]");
    }

    PdfDocument document_;
    int catalog_;
    int image_;
    std::string colourSpace_;
};

// 16 bits a component came with 1.5, soft masks with 1.4.
std::string_view versionFor(const PixelLayout& layout) { return layout.bitsPerSample == 16 ? "1.5" : "1.4"; }

RowShape shapeOf(const PixelLayout& layout, int channels) {
    const std::size_t pixel = static_cast<std::size_t>(channels) * static_cast<std::size_t>(layout.bitsPerSample) / 8;
    return {layout.width * pixel, pixel, layout.height};
}

// Copies `size` bytes of every pixel.
void copyPart(const std::byte* pixels, std::size_t pixelBytes, std::size_t count, std::size_t size, std::byte* part) {
    for (std::size_t x = 0; x < count; ++x, pixels += pixelBytes, part += size) {
        std::memcpy(part, pixels, size);
    }
}

// The colours are written as they are compressed; the alpha, a stream of its own, waits compressed
// in memory until they are through.
class PdfPictureWriter final : public RowWriter {
public:
    PdfPictureWriter(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata)
        : layout_(layout), page_(sink, versionFor(layout), layout, metadata), fileOrder_(layout.rowBytes()) {
        const int channels = colourChannels(layout);
        Entries entries = imageEntries(layout, page_.colourSpace());
        addPngPredictor(entries, layout, channels);
        if (layout.hasAlpha()) {
            mask_ = page_.document().reserve();
            entries.add("SMask", pdfReference(mask_));
            alpha_.emplace(shapeOf(layout, 1), compressionLevel,
                           [this](std::span<const std::byte> part) { alphaStream_.write(part); });
        }
        page_.document().beginStream(page_.image(), entries.text());
        colours_.emplace(shapeOf(layout, channels), compressionLevel,
                         [this](std::span<const std::byte> part) { page_.document().writeStreamPart(part); });
        part_.resize(shapeOf(layout, channels).rowBytes);
    }

    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override {
        for (std::uint32_t y = 0; y < count; ++y) {
            writeRow(rows + y * stride);
        }
    }

    void finish() override {
        colours_->finish();
        page_.document().endStream();
        if (alpha_) {
            alpha_->finish();
            Entries entries = imageEntries(layout_, deviceSpace(1));
            addPngPredictor(entries, layout_, 1);
            page_.document().writeStream(mask_, entries.text(), alphaStream_.bytes());
        }
        page_.finish();
    }

private:
    void writeRow(const std::byte* row) {
        if (layout_.bitsPerSample == 16) {
            copySwapped16(row, fileOrder_.data(), fileOrder_.size() / 2);
            row = fileOrder_.data();
        }
        if (!alpha_) {
            colours_->addRow(row);
            return;
        }
        const std::size_t pixel = layout_.bytesPerPixel();
        const std::size_t sample = static_cast<std::size_t>(layout_.bitsPerSample) / 8;
        copyPart(row, pixel, layout_.width, pixel - sample, part_.data());
        colours_->addRow(part_.data());
        copyPart(row + pixel - sample, pixel, layout_.width, sample, part_.data());
        alpha_->addRow(part_.data());
    }

    PixelLayout layout_;
    PicturePage page_;
    std::vector<std::byte> fileOrder_;  ///< one row
    std::vector<std::byte> part_;       ///< the colours or the alpha of one row
    std::optional<DeflatedRows> colours_;
    std::optional<DeflatedRows> alpha_;
    BufferSink alphaStream_;
    int mask_ = 0;
};

}  // namespace

std::unique_ptr<RowWriter> makePdfPictureWriter(ByteSink& sink, const PixelLayout& layout,
                                                const PictureMetadata& metadata) {
    requireValid(layout);
    return std::make_unique<PdfPictureWriter>(sink, layout, metadata);
}

void writeJpegPdf(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata,
                  std::span<const std::byte> jpeg) {
    requireValid(layout);
    if (layout.hasAlpha() || layout.bitsPerSample != 8) {
        throw std::invalid_argument("a JPEG has no such layout");
    }
    PicturePage page(sink, versionFor(layout), layout, metadata);
    Entries entries = imageEntries(layout, page.colourSpace());
    entries.add("Filter", "/DCTDecode");
    page.document().writeStream(page.image(), entries.text(), jpeg);
    page.finish();
}

}  // namespace sorvik::codecs
