#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>

namespace sorvik::draw::command_line {

/// An open file descriptor, closed at the end.
class Descriptor {
public:
    /// Throws std::system_error with the sentence's subject when `number`, as open() gave it, is none.
    Descriptor(int number, const std::filesystem::path& subject);
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&&) = delete;
    Descriptor(const Descriptor&) = delete;
    ~Descriptor();

    [[nodiscard]] int number() const { return number_; }
    /// Closes and gives errno, 0 when all went well.
    [[nodiscard]] int close();

private:
    int number_;
};

/// The place of an output. A file that stands there is replaced when the new one is whole, and not before; a link
/// stays and its target is replaced. System failures are std::system_error with the output's path.
class OutputFile {
public:
    /// Refuses what can be refused before any work is done: a folder, a device, the input under whatever name, a link
    /// to nothing, a file that may not be written, a folder that is not there. Throws Error too.
    OutputFile(const std::filesystem::path& output, const std::filesystem::path& input);

    /// Puts the bytes there, on the disk by the return. On a failure nothing has changed and nothing is left behind.
    /// Signals that end a program wait meanwhile.
    void write(std::span<const std::byte> bytes) const;

private:
    std::filesystem::path path_;  ///< no link
    Descriptor folder_;
    std::optional<mode_t> mode_;  ///< of the file that stands there
};

}  // namespace sorvik::draw::command_line
