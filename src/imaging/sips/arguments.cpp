#include "imaging/sips/arguments.h"

#include <algorithm>
#include <charconv>

#include "imaging/sips/failure.h"

namespace sorvik::sips {

namespace {

constexpr int maximumIconSide = 1024;

[[noreturn]] void refuse(const std::string& sentence) { throw Failure(Status::badUsage, sentence); }

int numberWithin(std::string_view key, std::string_view text, int least, int most) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < least || number > most) {
        refuse(std::string(key) + " must be a whole number from " + std::to_string(least) + " to " +
               std::to_string(most));
    }
    return number;
}

void mustBe(std::string_view key, std::string_view value, std::string_view only) {
    if (value != only) {
        refuse(std::string(key) + " must be " + std::string(only));
    }
}

Format formatNamed(std::string_view name) {
    const auto row = std::ranges::find(formats, name, &FormatRow::name);
    if (row == formats.end()) {
        throw Failure(Status::failed, "can't write " + std::string(name));
    }
    return row->format;
}

std::vector<int> iconSizesOf(std::string_view key, std::string_view list) {
    std::vector<int> sizes;
    while (true) {
        const std::size_t comma = list.find(',');
        sizes.push_back(numberWithin(key, list.substr(0, comma), 1, maximumIconSide));
        if (comma == std::string_view::npos) {
            return sizes;
        }
        list.remove_prefix(comma + 1);
    }
}

using Setter = void (*)(ConvertRequest&, std::string_view key, std::string_view value);

struct KeyRow {
    std::string_view key;
    Setter set;
};

constexpr std::array keys = {
    KeyRow{"format", [](ConvertRequest& r, std::string_view, std::string_view v) { r.format = formatNamed(v); }},
    KeyRow{"formatOptions",
           [](ConvertRequest& r, std::string_view k, std::string_view v) { r.quality = numberWithin(k, v, 0, 100); }},
    KeyRow{"optimize",
           [](ConvertRequest& r, std::string_view k, std::string_view v) { r.level = numberWithin(k, v, 0, 9); }},
    KeyRow{"purpose",
           [](ConvertRequest& r, std::string_view k, std::string_view v) {
               mustBe(k, v, "intermediate");
               r.intermediate = true;
           }},
    KeyRow{"colorSpace",
           [](ConvertRequest& r, std::string_view k, std::string_view v) {
               mustBe(k, v, "sRGB");
               r.toSrgb = true;
           }},
    KeyRow{"stripMetadata",
           [](ConvertRequest& r, std::string_view k, std::string_view v) {
               mustBe(k, v, "yes");
               r.stripMetadata = true;
           }},
    KeyRow{"iconSizes",
           [](ConvertRequest& r, std::string_view k, std::string_view v) { r.iconSizes = iconSizesOf(k, v); }},
};

void setKey(ConvertRequest& request, std::string_view key, std::string_view value) {
    const auto row = std::ranges::find(keys, key, &KeyRow::key);
    if (row == keys.end()) {
        refuse("no setting is called " + std::string(key));
    }
    row->set(request, key, value);
}

ConvertRequest convertRequest(std::span<const std::string_view> arguments) {
    ConvertRequest request;
    bool formatGiven = false;
    while (arguments.size() >= 3 && arguments[0] == "-s") {
        setKey(request, arguments[1], arguments[2]);
        formatGiven = formatGiven || arguments[1] == "format";
        arguments = arguments.subspan(3);
    }
    if (arguments.size() != 3 || arguments[1] != "--out" || arguments[0].empty() || arguments[2].empty()) {
        refuse("usage: sips [-s KEY VALUE]... INPUT --out OUTPUT");
    }
    if (!formatGiven) {
        refuse("the setting format is missing");
    }
    if (request.format != Format::png && (request.intermediate || !request.iconSizes.empty())) {
        refuse("purpose and iconSizes go with the format png only");
    }
    request.input = arguments[0];
    request.output = arguments[2];
    return request;
}

// The jobs besides conversion: a word, the paths behind it, and what more may follow.
struct JobRow {
    std::string_view word;
    std::size_t paths;
    std::size_t optional;
    const char* usage;
    Request (*make)(std::span<const std::string_view> words);
};

std::optional<int> qualityAt(std::span<const std::string_view> words, std::size_t index) {
    return index < words.size() ? std::optional(numberWithin("QUALITY", words[index], 0, 100)) : std::nullopt;
}

constexpr std::array jobs = {
    JobRow{"--carry-metadata", 2, 1, "usage: sips --carry-metadata FROM TO [QUALITY]",
           [](std::span<const std::string_view> p) -> Request {
               return CarryRequest{std::string(p[0]), std::string(p[1]), qualityAt(p, 2)};
           }},
    JobRow{"--describe", 1, 0, "usage: sips --describe FILE",
           [](std::span<const std::string_view> p) -> Request { return DescribeRequest{std::string(p[0])}; }},
    JobRow{"--keep-looks", 2, 0, "usage: sips --keep-looks FROM TO",
           [](std::span<const std::string_view> p) -> Request {
               return KeepLooksRequest{std::string(p[0]), std::string(p[1])};
           }},
    JobRow{"--recode-jpeg", 2, 0, "usage: sips --recode-jpeg FROM TO",
           [](std::span<const std::string_view> p) -> Request {
               return RecodeRequest{std::string(p[0]), std::string(p[1])};
           }},
};

}  // namespace

Request parseArguments(std::span<const std::string_view> arguments) {
    const auto job = arguments.empty() ? jobs.end() : std::ranges::find(jobs, arguments.front(), &JobRow::word);
    if (job == jobs.end()) {
        return convertRequest(arguments);
    }
    const auto words = arguments.subspan(1);
    if (words.size() < job->paths || words.size() > job->paths + job->optional) {
        refuse(job->usage);
    }
    return job->make(words);
}

}  // namespace sorvik::sips
