#pragma once

#include <stdexcept>
#include <string>

namespace sorvik::draw {

/// A document that was read but can't be drawn; what() is a sentence in UTF-8.
class DrawingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    /// "missing referenced element: ...", "Cannot decode image" and the like.
    // NOLINTBEGIN(modernize-return-braced-init-list): the constructor is explicit
    static DrawingError invalid(const std::string& what) { return DrawingError(what); }
    static DrawingError unsupported(const std::string& what) { return DrawingError("unsupported: " + what); }
    // NOLINTEND(modernize-return-braced-init-list)
};

/// A document or picture beyond what limits.h allows.
class LimitError : public DrawingError {
public:
    using DrawingError::DrawingError;
};

}  // namespace sorvik::draw
