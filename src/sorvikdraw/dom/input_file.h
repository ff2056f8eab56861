#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>

namespace sorvik::draw::xml {

/// A regular file that is read once from its start. All of it throws XMLParserError of kind other.
class InputFile {
public:
    explicit InputFile(const std::filesystem::path& path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    /// How much is best read at a time; more than the whole of a small file.
    [[nodiscard]] std::size_t pieceBytes() const { return pieceBytes_; }

    /// Fills `buffer` as far as the file goes, and gives how far that was.
    [[nodiscard]] std::size_t read(std::span<char> buffer);

private:
    int descriptor_;
    std::size_t pieceBytes_ = 0;
    std::size_t readBytes_ = 0;
};

/// Throws for the beginning of a file that is compressed as a whole, as SVG sometimes is.
void refuseCompressed(std::string_view beginning);

/// Throws for a document of more bytes than limits.h allows.
void refuseTooLong(std::size_t bytes);

}  // namespace sorvik::draw::xml
