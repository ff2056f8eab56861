#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace sorvik::bundle {

/// Where the PostScript lies in a file, in bytes. An EPS with a preview for DOS has a binary header in front
/// and the preview before or behind.
struct PostScriptSection {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
    bool complete = true;  ///< whether the file is as long as its header says
    bool operator==(const PostScriptSection&) const = default;
};

/// In PostScript points, the origin at the bottom left.
struct BoundingBox {
    double left = 0;
    double bottom = 0;
    double right = 0;
    double top = 0;
    bool operator==(const BoundingBox&) const = default;
};

/// What the structuring comments of a PostScript text say about its extent.
struct Extent {
    std::optional<BoundingBox> box;
    bool missing = false;  ///< promised for the end of the text, and not there: the end is missing
    bool operator==(const Extent&) const = default;
};

/// Looks at the first bytes of a file; 32 are enough. Absent when they are no PostScript.
/// Source of the binary header: Adobe's "Encapsulated PostScript File Format" 3.0, section 5.2.
[[nodiscard]] std::optional<PostScriptSection> findPostScript(std::string_view head, std::uint64_t fileSize);

/// The bounding box by the comments of a text, the finer one where there are two, from its first and its last
/// bytes. Boxes without an area count as none. Source: Adobe's Document Structuring Conventions 3.0.
[[nodiscard]] Extent findExtent(std::string_view head, std::string_view tail);

/// Whether the last bytes of a text say that it ends here.
[[nodiscard]] bool saysItEnds(std::string_view tail);

}  // namespace sorvik::bundle
