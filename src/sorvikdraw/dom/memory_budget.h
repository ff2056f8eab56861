#pragma once

#include <cstddef>
#include <string>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/xml_parser_error.h"

namespace sorvik::draw {

/// What a document's elements cost, about. Elements can stand in several places of a document at once (every "svg"
/// has the definitions of those inside), so that the size of the file bounds nothing.
class MemoryBudget {
public:
    /// Throws XMLParserError when the document has used up what it may.
    void spend(std::size_t bytes) {
        spent_ += bytes;
        if (spent_ > limits::documentBytes) {
            throw XMLParserError::other("too large: its elements take more than " +
                                        std::to_string(limits::documentBytes >> 20U) + " MB of memory");
        }
    }

private:
    std::size_t spent_ = 0;
};

}  // namespace sorvik::draw
