#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "sorvikdraw/dom/xml_element.h"

namespace sorvik::draw {

/// What a person sees on standard error.
class StandardErrorStream {
public:
    /// Whole, without a buffer, so that lines of several threads stay apart. What can't be written is lost.
    static void write(std::string_view text);
};

/// The line that logParsingError writes, without its end. It holds no control characters and is valid UTF-8.
[[nodiscard]] std::string parsingErrorLine(const std::exception& error, std::string_view filename,
                                           const xml::Element* element);

/// Reports `error` on standard error in one line, with the place where it is known. `filename` is empty for what is
/// no file, `element` is null where no element was at work.
void logParsingError(const std::exception& error, std::string_view filename = {},
                     const xml::Element* element = nullptr);

}  // namespace sorvik::draw
