#include "codecs/descriptor_io.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "codecs/byte_sink.h"

namespace sorvik::codecs {
namespace {

// Calls `writeSome` with what is left until nothing is: a write may take a part only (a disk that is
// nearly full answers so) or be broken off by a signal.
template <typename WriteSome>
void writeEverything(std::span<const std::byte> bytes, const WriteSome& writeSome) {
    while (!bytes.empty()) {
        const ssize_t written = writeSome(bytes);
        if (written > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            const int error = written == 0 ? EIO : errno;
            throw SinkError(std::generic_category().message(error), error);
        }
    }
}

}  // namespace

void writeAll(int fileDescriptor, std::span<const std::byte> bytes) {
    writeEverything(bytes,
                    [&](std::span<const std::byte> left) { return ::write(fileDescriptor, left.data(), left.size()); });
}

void writeAllAt(int fileDescriptor, std::span<const std::byte> bytes, std::size_t offset) {
    const std::size_t end = offset + bytes.size();
    writeEverything(bytes, [&](std::span<const std::byte> left) {
        return ::pwrite(fileDescriptor, left.data(), left.size(), static_cast<off_t>(end - left.size()));
    });
}

}  // namespace sorvik::codecs
