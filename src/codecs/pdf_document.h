#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "codecs/byte_sink.h"

namespace sorvik::codecs {

/// Writes the frame of a PDF file (ISO 32000-1, clause 7.5): numbered objects, the table of where they lie
/// and the trailer. Objects may be written in any order and named before they are written.
class PdfDocument {
public:
    /// `version` as "1.4". Writes the header.
    PdfDocument(ByteSink& sink, std::string_view version);

    /// The number of a new object, to be written once.
    [[nodiscard]] int reserve();

    /// A whole object: a dictionary or another value, as it stands in the file.
    void writeObject(int number, std::string_view value);

    /// A stream object with the dictionary's entries given, without /Length.
    void writeStream(int number, std::string_view entries, std::span<const std::byte> data);

    /// A stream whose length is not known before: begin, any number of parts, end. No other object
    /// may be written in between.
    void beginStream(int number, std::string_view entries);
    void writeStreamPart(std::span<const std::byte> part);
    void endStream();

    /// The table of objects and the trailer. Every number reserved must have been written.
    void finish(int catalog);

private:
    void write(std::string_view text);
    void write(std::span<const std::byte> bytes);
    void beginObject(int number);

    ByteSink& sink_;
    std::size_t position_ = 0;
    std::vector<std::size_t> offsets_;  ///< of object 1 and on
    std::size_t streamStart_ = 0;
    int streamLength_ = 0;  ///< the object that holds the open stream's length
};

/// "7 0 R"
[[nodiscard]] std::string pdfReference(int number);

}  // namespace sorvik::codecs
