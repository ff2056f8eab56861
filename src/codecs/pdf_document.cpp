#include "codecs/pdf_document.h"

#include <cstdint>

namespace sorvik::codecs {
namespace {

std::string padded(std::size_t number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(width > digits.size() ? width - digits.size() : 0, '0').append(digits);
}

}  // namespace

std::string pdfReference(int number) { return std::to_string(number).append(" 0 R"); }

PdfDocument::PdfDocument(ByteSink& sink, std::string_view version) : sink_(sink) {
    write("%PDF-");
    write(version);
    write("\n%\xE2\xE3\xCF\xD3\n");  // bytes beyond ASCII: transfer programs take the file for binary
}

int PdfDocument::reserve() {
    offsets_.push_back(0);
    return static_cast<int>(offsets_.size());
}

void PdfDocument::beginObject(int number) {
    offsets_.at(static_cast<std::size_t>(number) - 1) = position_;
    write(std::to_string(number).append(" 0 obj\n"));
}

void PdfDocument::writeObject(int number, std::string_view value) {
    beginObject(number);
    write(value);
    write("\nendobj\n");
}

void PdfDocument::writeStream(int number, std::string_view entries, std::span<const std::byte> data) {
    beginObject(number);
    write("<< ");
    write(entries);
    write(std::string(" /Length ").append(std::to_string(data.size())).append(" >>\nstream\n"));
    write(data);
    write("\nendstream\nendobj\n");
}

void PdfDocument::beginStream(int number, std::string_view entries) {
    streamLength_ = reserve();
    beginObject(number);
    write("<< ");
    write(entries);
    write(std::string(" /Length ").append(pdfReference(streamLength_)).append(" >>\nstream\n"));
    streamStart_ = position_;
}

void PdfDocument::writeStreamPart(std::span<const std::byte> part) { write(part); }

void PdfDocument::endStream() {
    const std::size_t length = position_ - streamStart_;
    write("\nendstream\nendobj\n");
    writeObject(streamLength_, std::to_string(length));
}

void PdfDocument::finish(int catalog) {
    const std::size_t tableStart = position_;
    const std::string count = std::to_string(offsets_.size() + 1);
    write(std::string("xref\n0 ").append(count).append("\n0000000000 65535 f \n"));
    for (const std::size_t offset : offsets_) {
        write(padded(offset, 10).append(" 00000 n \n"));
    }
    write(std::string("trailer\n<< /Size ").append(count).append(" /Root ").append(pdfReference(catalog)));
    write(std::string(" >>\nstartxref\n").append(std::to_string(tableStart)).append("\n%%EOF\n"));
}

void PdfDocument::write(std::string_view text) { write(std::as_bytes(std::span(text))); }

void PdfDocument::write(std::span<const std::byte> bytes) {
    sink_.write(bytes);
    position_ += bytes.size();
}

}  // namespace sorvik::codecs
