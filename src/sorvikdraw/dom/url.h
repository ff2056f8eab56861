#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sorvik::draw::dom {

/// A reference as it stands in a document. Nothing is ever fetched: a URL is looked at for its fragment, which
/// names an element of the same document, or for the data that it holds itself.
struct URL {
    std::string absoluteString;

    /// The part behind the first "#", percent-encoded as in the source; absent without one.
    [[nodiscard]] std::optional<std::string_view> fragment() const;

    bool operator==(const URL&) const = default;
};

/// The parts of a "data:" URL (RFC 2397) with a base64 payload.
struct URLData {
    std::string_view mimeType;  ///< lies in the URL
    std::vector<std::byte> bytes;
};

/// Absent unless scheme, MIME type, "base64," and a payload that decodes are all there and none is empty.
[[nodiscard]] std::optional<URLData> urlData(const URL& url);

/// Makes a URL of an attribute's text; blanks, tabs and line feeds leave a "data:" URL first. Absent for what
/// RFC 3986 does not take for a URL reference (blanks, control characters, an empty text).
[[nodiscard]] std::optional<URL> makeURL(std::string_view text);

}  // namespace sorvik::draw::dom
