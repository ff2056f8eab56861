#pragma once

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace sorvik::codecs {

/// A write that did not happen; `errorNumber()` is the errno of the call that failed.
class SinkError : public std::runtime_error {
public:
    SinkError(const std::string& what, int errorNumber) : std::runtime_error(what), errorNumber_(errorNumber) {}
    [[nodiscard]] int errorNumber() const { return errorNumber_; }

private:
    int errorNumber_;
};

/// Where encoded bytes go, in order.
class ByteSink {
public:
    virtual ~ByteSink() = default;

    /// Takes all of `bytes` or throws SinkError.
    virtual void write(std::span<const std::byte> bytes) = 0;
};

/// An open file descriptor, which stays the caller's. Gathers small writes; checks the count of each.
class FileSink final : public ByteSink {
public:
    explicit FileSink(int fileDescriptor);
    void write(std::span<const std::byte> bytes) override;

    /// Hands on what is gathered. To be called once at the end; throws SinkError.
    void flush();

private:
    int fileDescriptor_;
    std::vector<std::byte> gathered_;
};

/// Memory.
class BufferSink final : public ByteSink {
public:
    void write(std::span<const std::byte> bytes) override { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
    [[nodiscard]] const std::vector<std::byte>& bytes() const { return bytes_; }

private:
    std::vector<std::byte> bytes_;
};

}  // namespace sorvik::codecs
