#include "codecs/byte_sink.h"

#include "codecs/descriptor_io.h"

namespace sorvik::codecs {
namespace {

constexpr std::size_t gatherLimit = std::size_t{32} * 1024;

}  // namespace

FileSink::FileSink(int fileDescriptor) : fileDescriptor_(fileDescriptor) { gathered_.reserve(gatherLimit); }

void FileSink::write(std::span<const std::byte> bytes) {
    if (gathered_.size() + bytes.size() > gatherLimit) {
        flush();
    }
    if (bytes.size() >= gatherLimit) {
        writeAll(fileDescriptor_, bytes);
    } else {
        gathered_.insert(gathered_.end(), bytes.begin(), bytes.end());
    }
}

void FileSink::flush() {
    writeAll(fileDescriptor_, gathered_);
    gathered_.clear();
}

}  // namespace sorvik::codecs
