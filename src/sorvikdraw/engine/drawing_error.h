#pragma once

#include <stdexcept>
#include <string>

namespace sorvik::draw {

/// A document that was read but can't be drawn; what() is a sentence in UTF-8.
class DrawingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    /// "missing referenced element: ...", "Cannot decode image" and the like.
    static DrawingError invalid(const std::string& what) { return DrawingError(what); }
    static DrawingError unsupported(const std::string& what) { return DrawingError("unsupported: " + what); }
};

/// A document or picture beyond what limits.h allows.
class LimitError : public DrawingError {
public:
    using DrawingError::DrawingError;
};

}  // namespace sorvik::draw
