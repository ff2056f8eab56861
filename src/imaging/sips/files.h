#pragma once

#include <sys/types.h>

#include <cstddef>
#include <span>
#include <string>

namespace sorvik::sips {

/// An open file descriptor, closed at the end.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.number_) { other.number_ = -1; }
    Descriptor& operator=(Descriptor&&) = delete;
    Descriptor(const Descriptor&) = delete;
    ~Descriptor();

    [[nodiscard]] int number() const { return number_; }
    /// Closes and gives errno, 0 when all went well.
    [[nodiscard]] int close();

private:
    int number_;
};

/// Which file it is, however it is named.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    bool operator==(const FileIdentity&) const = default;
};

/// A regular, not empty file, mapped for reading. Its name is opened once and never looked at again.
class InputFile {
public:
    /// Throws Failure. Never waits, whatever the name stands for.
    explicit InputFile(const std::string& path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    [[nodiscard]] int descriptor() const { return descriptor_.number(); }
    [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }
    [[nodiscard]] const FileIdentity& identity() const { return identity_; }

private:
    Descriptor descriptor_;
    FileIdentity identity_;
    std::span<const std::byte> bytes_;
};

/// The file being made: emptied when it exists, and removed again unless it was kept.
class OutputFile {
public:
    /// Throws Failure; `input` must be another file.
    OutputFile(const std::string& path, const FileIdentity& input);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    [[nodiscard]] int descriptor() const { return descriptor_.number(); }
    /// Closes the finished file. Throws Failure when the system reports a late fault.
    void keep();

private:
    std::string path_;
    Descriptor descriptor_;
    bool made_ = false;
};

/// A new file beside `path` that takes its place when it is finished, and is removed otherwise.
class ReplacementFile {
public:
    /// Throws Failure.
    explicit ReplacementFile(const std::string& path);
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;
    ~ReplacementFile();

    [[nodiscard]] int descriptor() const { return descriptor_.number(); }
    /// Throws Failure; `path` then holds what it held before.
    void replace();

private:
    std::string path_;
    std::string temporary_;
    Descriptor descriptor_;
};

/// Puts `bytes` in the place of the file, whole or not at all. Throws Failure and codecs::SinkError.
void replaceWith(const std::string& path, std::span<const std::byte> bytes);

}  // namespace sorvik::sips
