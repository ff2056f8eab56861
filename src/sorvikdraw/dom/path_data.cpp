
#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/list_limit.h"
#include "sorvikdraw/dom/scanner.h"
#include "sorvikdraw/dom/value_parser.h"

namespace sorvik::draw {

namespace {

using Segment = dom::PathSegment;
using Space = Segment::CoordinateSpace;

enum class Command : std::uint8_t {
    move,
    moveRelative,
    line,
    lineRelative,
    horizontal,
    horizontalRelative,
    vertical,
    verticalRelative,
    cubic,
    cubicRelative,
    cubicSmooth,
    cubicSmoothRelative,
    quadratic,
    quadraticRelative,
    quadraticSmooth,
    quadraticSmoothRelative,
    arc,
    arcRelative,
    close,
    closeAlias,
};
/// In the order of Command.
constexpr std::string_view commandCharacters = "MmLlHhVvCcSsQqTtAaZz";
static_assert(commandCharacters.size() == static_cast<std::size_t>(Command::closeAlias) + 1);

constexpr CharacterSet commandSet(commandCharacters);
constexpr CharacterSet delimiters(",;");

constexpr Space spaceOf(Command command) {
    return static_cast<unsigned>(command) % 2 == 0 ? Space::absolute : Space::relative;
}

/// Reads the arguments of one segment. A failure is remembered and makes all of them worthless.
class Arguments {
public:
    explicit Arguments(Scanner& scanner) : scanner_(scanner) {}

    float number() { return taken(scanner_.scanFloat()); }
    bool flag() { return taken(scanner_.scanBool()); }
    [[nodiscard]] bool failed() const { return failed_; }

private:
    template <typename Value>
    Value taken(const std::optional<Value>& value) {
        failed_ = failed_ || !value;
        scanner_.scanCharacter(delimiters);
        return value.value_or(Value());
    }

    Scanner& scanner_;
    bool failed_ = false;
};

// Arguments are read in the order of the fields: braces keep it.
Segment scanSegment(Command command, Arguments& take) {
    const auto space = spaceOf(command);
    const auto number = [&take] { return take.number(); };
    switch (command) {
        case Command::move:
        case Command::moveRelative:
            return {Segment::Move{number(), number(), space}};
        case Command::line:
        case Command::lineRelative:
            return {Segment::Line{number(), number(), space}};
        case Command::horizontal:
        case Command::horizontalRelative:
            return {Segment::Horizontal{number(), space}};
        case Command::vertical:
        case Command::verticalRelative:
            return {Segment::Vertical{number(), space}};
        case Command::cubic:
        case Command::cubicRelative:
            return {Segment::Cubic{number(), number(), number(), number(), number(), number(), space}};
        case Command::cubicSmooth:
        case Command::cubicSmoothRelative:
            return {Segment::CubicSmooth{number(), number(), number(), number(), space}};
        case Command::quadratic:
        case Command::quadraticRelative:
            return {Segment::Quadratic{number(), number(), number(), number(), space}};
        case Command::quadraticSmooth:
        case Command::quadraticSmoothRelative:
            return {Segment::QuadraticSmooth{number(), number(), space}};
        case Command::arc:
        case Command::arcRelative:
            return {Segment::Arc{number(), number(), number(), take.flag(), take.flag(), number(), number(), space}};
        case Command::close:
        case Command::closeAlias:
            break;
    }
    return {Segment::Close{}};
}

// What a segment without a letter of its own is. A close takes nothing, so that repeating it would never end.
std::optional<Command> repeated(std::optional<Command> previous) {
    if (previous == Command::close || previous == Command::closeAlias) {
        return std::nullopt;
    }
    if (previous == Command::move) {
        return Command::line;
    }
    return previous == Command::moveRelative ? Command::lineRelative : previous;
}

std::optional<Command> nextPathCommand(Scanner& scanner, std::optional<Command> previous) {
    const auto letter = scanner.scanCharacter(commandSet);
    return letter ? static_cast<Command>(commandCharacters.find(*letter)) : repeated(previous);
}

}  // namespace

std::optional<std::vector<Segment>> ValueParser::parsePathSegments(std::string_view text) {
    Scanner scanner(text);
    std::vector<Segment> segments;
    std::optional<Command> command;
    while (!scanner.isEOF()) {
        command = nextPathCommand(scanner, command);
        if (!command) {
            return std::nullopt;
        }
        Arguments arguments(scanner);
        const auto segment = scanSegment(*command, arguments);
        if (arguments.failed()) {
            return std::nullopt;
        }
        requireRoom(segments.size(), limits::pathSegments, "segments in a path");
        segments.push_back(segment);
    }
    segments.shrink_to_fit();
    return segments;
}

}  // namespace sorvik::draw
