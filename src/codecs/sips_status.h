#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace sorvik::codecs {

/// How a run of the `sips` tool ended: its exit status. Any status but `finished` leaves no output
/// file, and one sentence on standard error.
enum class SipsStatus : int {
    finished = 0,
    failed = 1,            ///< not a picture that can be read, truncated, a target that can't be written
    badUsage = 2,          ///< arguments that make no sense
    tooLarge = 3,          ///< refused by its size before anything was decoded
    noSpace = 4,           ///< the disk is full, or a quota or a file size limit is reached
    permissionDenied = 5,  ///< the input can't be read or the output can't be made
    noSuchFile = 6,
    outOfMemory = 7,
    notARegularFile = 8,  ///< a folder, a pipe, a device, a socket
};

struct SipsStatusRow {
    SipsStatus status;
    std::string_view name;
};

/// One row a status, in the order of the numbers.
inline constexpr std::array sipsStatuses = {
    SipsStatusRow{SipsStatus::finished, "finished"},
    SipsStatusRow{SipsStatus::failed, "failed"},
    SipsStatusRow{SipsStatus::badUsage, "bad usage"},
    SipsStatusRow{SipsStatus::tooLarge, "too large"},
    SipsStatusRow{SipsStatus::noSpace, "no space left"},
    SipsStatusRow{SipsStatus::permissionDenied, "permission denied"},
    SipsStatusRow{SipsStatus::noSuchFile, "no such file"},
    SipsStatusRow{SipsStatus::outOfMemory, "out of memory"},
    SipsStatusRow{SipsStatus::notARegularFile, "not a regular file"},
};

static_assert([] {
    for (std::size_t i = 0; i < sipsStatuses.size(); ++i) {
        if (static_cast<std::size_t>(sipsStatuses[i].status) != i) {
            return false;
        }
    }
    return true;
}());

}  // namespace sorvik::codecs
