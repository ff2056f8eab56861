#include "imaging/sips/files.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

#include "codecs/byte_sink.h"
#include "imaging/sips/failure.h"

namespace sorvik::sips {

namespace {

int openOrThrow(const std::string& path, int flags, const char* what) {
    const int number = ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
    if (number < 0) {
        throw failureOf(errno, what);
    }
    return number;
}

struct stat statusOf(int descriptor, const char* what) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        throw failureOf(errno, what);
    }
    if (!S_ISREG(status.st_mode)) {
        throw Failure(Status::notARegularFile, std::string(what) + ": not a regular file");
    }
    return status;
}

int makeTemporary(std::string& pattern) {
    const int number = ::mkostemp(pattern.data(), O_CLOEXEC);
    if (number < 0) {
        throw failureOf(errno, "the output");
    }
    return number;
}

}  // namespace

Descriptor::~Descriptor() {
    if (number_ >= 0) {
        ::close(number_);
    }
}

int Descriptor::close() { return ::close(std::exchange(number_, -1)) == 0 ? 0 : errno; }

InputFile::InputFile(const std::string& path) : descriptor_(openOrThrow(path, O_RDONLY, "the input")) {
    const struct stat status = statusOf(descriptor(), "the input");
    identity_ = {status.st_dev, status.st_ino};
    if (status.st_size == 0) {
        throw Failure(Status::failed, "the file is empty");
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    void* mapped = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor(), 0);
    if (mapped == MAP_FAILED) {
        throw failureOf(errno, "the input");
    }
    bytes_ = {static_cast<const std::byte*>(mapped), size};
}

InputFile::~InputFile() { ::munmap(const_cast<std::byte*>(bytes_.data()), bytes_.size()); }

OutputFile::OutputFile(const std::string& path, const FileIdentity& input)
    : path_(path), descriptor_(openOrThrow(path, O_RDWR | O_CREAT, "the output")) {
    const struct stat status = statusOf(descriptor(), "the output");
    if (input == FileIdentity{status.st_dev, status.st_ino}) {
        throw Failure(Status::badUsage, "the output is the input");
    }
    made_ = true;
    if (::ftruncate(descriptor(), 0) != 0) {
        const int error = errno;
        ::unlink(path_.c_str());
        throw failureOf(error, "the output");
    }
}

OutputFile::~OutputFile() {
    if (made_) {
        ::unlink(path_.c_str());
    }
}

ReplacementFile::ReplacementFile(const std::string& path)
    // A name of its own: a long one of the target would leave no room for a suffix.
    : path_(path),
      temporary_(path.substr(0, path.rfind('/') + 1) + ".sips-XXXXXX"),
      descriptor_(makeTemporary(temporary_)) {}

ReplacementFile::~ReplacementFile() {
    if (!temporary_.empty()) {
        ::unlink(temporary_.c_str());
    }
}

void ReplacementFile::replace() {
    struct stat status {};
    // The access rights stay those of the file that goes.
    const bool known = ::stat(path_.c_str(), &status) == 0;
    if ((known && ::fchmod(descriptor(), status.st_mode & 07777) != 0) || ::fsync(descriptor()) != 0) {
        throw failureOf(errno, "the output");
    }
    if (const int error = descriptor_.close(); error != 0) {
        throw failureOf(error, "the output");
    }
    if (::rename(temporary_.c_str(), path_.c_str()) != 0) {
        throw failureOf(errno, "the output");
    }
    temporary_.clear();
}

void OutputFile::keep() {
    if (const int error = descriptor_.close(); error != 0) {
        throw failureOf(error, "the output");
    }
    made_ = false;
}

void replaceWith(const std::string& path, std::span<const std::byte> bytes) {
    ReplacementFile replacement(path);
    codecs::FileSink sink(replacement.descriptor());
    sink.write(bytes);
    sink.flush();
    replacement.replace();
}

}  // namespace sorvik::sips
