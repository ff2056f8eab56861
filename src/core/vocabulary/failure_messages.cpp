#include "core/vocabulary/failure_messages.h"

#include <algorithm>
#include <array>

namespace sorvik {
namespace {

struct Classification {
    std::array<const char*, 2> keys;
    const char* sentence;
};

// The first row of which one key is contained in the lower-cased text wins; the order matters.
constexpr std::array classifications{
    Classification{{"no such file or directory"}, "The file could not be found. It may have been moved or deleted."},
    Classification{{"permission denied"}, "Permission denied. Please check that you have access to this file."},
    Classification{{"not a valid", "unable to open image"},
                   "This file format is not supported or the file may be corrupted."},
    Classification{{"failed to initialise pdf interpreter"},
                   "This AI file uses a newer format that requires updated conversion tools."},
    Classification{{"unable to open the initial device"},
                   "The image conversion tool encountered a system error. Please try again."},
    Classification{{"memory", "allocation"}, "Not enough memory to process this file. Try closing other applications."},
    Classification{{"disk", "space"}, "Not enough disk space to complete the conversion."},
    Classification{{"file in use", "resource busy"},
                   "The file is currently in use by another process. Please try again in a moment."},
};

constexpr auto anythingElse = "The conversion failed. Please ensure the file is not corrupted and try again.";

static_assert(classifications.size() + 1 == 9, "nine sentences, the last for anything else");

}  // namespace

QString userMessage(const QString& raw) {
    const QString text = raw.toLower();
    const auto* found = std::ranges::find_if(classifications, [&](const Classification& row) {
        return std::ranges::any_of(
            row.keys, [&](const char* key) { return key != nullptr && text.contains(QLatin1StringView(key)); });
    });
    return QString::fromUtf8(found == classifications.end() ? anythingElse : found->sentence);
}

}  // namespace sorvik
