#include "bundle/magick/postscript_source.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace sorvik::bundle {

namespace {

constexpr std::string_view dosMagic = "\xC5\xD0\xD3\xC6";
constexpr std::size_t dosHeaderLength = 30;
constexpr std::string_view atEnd = "(atend)";

// The finer box counts, wherever it stands.
constexpr std::array boxComments{std::string_view("%%HiResBoundingBox:"), std::string_view("%%BoundingBox:")};

std::uint32_t littleEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t index = sizeof value; index-- > 0;) {
        value = value << 8U | static_cast<unsigned char>(bytes[index]);
    }
    return value;
}

/// What printers' queues and editors put in front of a text.
std::string_view withoutLeader(std::string_view head) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (head.starts_with(byteOrderMark)) {
        head.remove_prefix(byteOrderMark.size());
    }
    const std::size_t start = head.find_first_not_of("\x04 \t\r\n");
    return start == std::string_view::npos ? std::string_view() : head.substr(start);
}

/// Takes a line from the front of a text, whatever ends it.
std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find_first_of("\r\n");
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t");
    return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

std::optional<double> takeNumber(std::string_view& text) {
    text = trimmed(text);
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || !std::isfinite(value)) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return value;
}

std::optional<BoundingBox> readBox(std::string_view text) {
    std::array<double, 4> corners{};
    for (double& corner : corners) {
        const auto number = takeNumber(text);
        if (!number) {
            return std::nullopt;
        }
        corner = *number;
    }
    const BoundingBox box{corners[0], corners[1], corners[2], corners[3]};
    return box.right > box.left && box.top > box.bottom ? std::optional(box) : std::nullopt;
}

struct Comment {
    std::optional<BoundingBox> box;
    bool promised = false;
};

/// The value of a box comment among the comments that begin a text.
Comment headerComment(std::string_view text, std::string_view name) {
    text = withoutLeader(text);
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.starts_with("%%EndComments") || (!line.empty() && !line.starts_with('%'))) {
            break;
        }
        if (line.starts_with(name)) {
            const std::string_view value = trimmed(line.substr(name.size()));
            return {readBox(value), value.starts_with(atEnd)};
        }
    }
    return {};
}

/// The last value of a box comment in the end of a text.
std::optional<BoundingBox> trailerBox(std::string_view text, std::string_view name) {
    std::optional<BoundingBox> last;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.starts_with(name)) {
            last = readBox(line.substr(name.size()));
        }
    }
    return last;
}

}  // namespace

std::optional<PostScriptSection> findPostScript(std::string_view head, std::uint64_t fileSize) {
    if (!head.starts_with(dosMagic)) {
        return withoutLeader(head).starts_with("%!") ? std::optional(PostScriptSection{0, fileSize}) : std::nullopt;
    }
    if (head.size() < dosHeaderLength) {
        return PostScriptSection{0, fileSize, false};
    }
    const std::uint64_t offset = littleEndian(head.substr(4));
    const std::uint64_t length = littleEndian(head.substr(8));
    return PostScriptSection{offset, length, length > 0 && offset + length <= fileSize};
}

Extent findExtent(std::string_view head, std::string_view tail) {
    bool promised = false;
    for (const std::string_view name : boxComments) {
        Comment comment = headerComment(head, name);
        promised = promised || comment.promised;
        if (comment.promised) {
            comment.box = trailerBox(tail, name);
        }
        if (comment.box) {
            return {comment.box, false};
        }
    }
    return {std::nullopt, promised};
}

bool saysItEnds(std::string_view tail) {
    constexpr std::size_t searched = 1024;  // nobody writes much behind it
    tail.remove_prefix(tail.size() - std::min(tail.size(), searched));
    while (!tail.empty()) {
        const std::string_view line = takeLine(tail);
        if (line.starts_with("%%EOF") || line.starts_with("%%Trailer")) {
            return true;
        }
    }
    return false;
}

}  // namespace sorvik::bundle
