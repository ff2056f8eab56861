#include "sorvikdraw/dom/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/xml_parser_error.h"

namespace sorvik::draw::xml {
namespace {

constexpr std::size_t largestPiece = 4U << 20U;

XMLParserError systemFailure(int error) {
    return XMLParserError::other("cannot read the file: " + std::generic_category().message(error));
}

// Never waits for a pipe's other end.
int openForReading(const std::filesystem::path& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        throw systemFailure(errno);
    }
    return descriptor;
}

std::size_t sizeOfRegularFile(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        throw systemFailure(errno);
    }
    if (S_ISDIR(status.st_mode)) {
        throw systemFailure(EISDIR);
    }
    if (!S_ISREG(status.st_mode)) {
        throw XMLParserError::other("cannot read the file: it is not a regular file");
    }
    return static_cast<std::size_t>(status.st_size);
}

}  // namespace

InputFile::InputFile(const std::filesystem::path& path) : descriptor_(openForReading(path)) {
    try {
        const std::size_t size = sizeOfRegularFile(descriptor_);
        refuseTooLong(size);
        pieceBytes_ = std::min(size + 1, largestPiece);
    } catch (...) {
        ::close(descriptor_);
        throw;
    }
}

InputFile::~InputFile() { ::close(descriptor_); }

std::size_t InputFile::read(std::span<char> buffer) {
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const ssize_t got = ::read(descriptor_, buffer.data() + filled, buffer.size() - filled);
        if (got == 0) {
            break;
        }
        if (got > 0) {
            filled += static_cast<std::size_t>(got);
        } else if (errno != EINTR) {
            throw systemFailure(errno);
        }
    }
    readBytes_ += filled;
    refuseTooLong(readBytes_);
    return filled;
}

void refuseCompressed(std::string_view beginning) {
    if (beginning.starts_with("\x1f\x8b")) {
        throw XMLParserError::other("the file is compressed (gzip); decompress it first");
    }
}

void refuseTooLong(std::size_t bytes) {
    if (bytes > limits::fileBytes) {
        throw XMLParserError::other("too large: more than " + std::to_string(limits::fileBytes >> 20U) + " MB");
    }
}

}  // namespace sorvik::draw::xml
