#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace sorvik::draw::command_line {

/// Why a run is refused, with a sentence for people. The sentence is empty when a line about the failure has been
/// printed already.
class Error : public std::runtime_error {
public:
    enum class Kind : std::uint8_t {
        invalid,       ///< arguments that say nothing that can be done, or a document that does not load
        unsupported,   ///< well said, but not to be had
        fileNotFound,  ///< the input
    };

    Error(Kind kind, const std::string& sentence) : std::runtime_error(sentence), kind_(kind) {}
    static Error invalid(const std::string& sentence) { return {Kind::invalid, sentence}; }
    static Error unsupported(const std::string& sentence) { return {Kind::unsupported, sentence}; }
    static Error fileNotFound(const std::string& sentence) { return {Kind::fileNotFound, sentence}; }

    [[nodiscard]] Kind kind() const { return kind_; }

private:
    Kind kind_;
};

}  // namespace sorvik::draw::command_line
