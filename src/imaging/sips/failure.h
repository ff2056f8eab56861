#pragma once

#include <stdexcept>
#include <string>

#include "codecs/sips_status.h"

namespace sorvik::sips {

using Status = codecs::SipsStatus;

/// Why a run ends without an output: the exit status and the sentence for standard error, without
/// the tool's name in front.
class Failure : public std::runtime_error {
public:
    Failure(Status status, const std::string& sentence) : std::runtime_error(sentence), status_(status) {}
    [[nodiscard]] Status status() const { return status_; }

private:
    Status status_;
};

/// The failure of a system call that left `errorNumber`. `what` names what it was about, for example
/// "the output".
[[nodiscard]] Failure failureOf(int errorNumber, const std::string& what);

/// Runs `job` and turns whatever it throws into one line on the descriptor `standardError` and a
/// status. std::bad_alloc becomes outOfMemory, codecs::SinkError what its errno says.
template <typename Job>
[[nodiscard]] Status reportingFailures(int standardError, Job&& job);

/// Handles the exception in flight, as reportingFailures does.
[[nodiscard]] Status reportCurrentException(int standardError);

template <typename Job>
Status reportingFailures(int standardError, Job&& job) {
    try {
        return job();
    } catch (...) {
        return reportCurrentException(standardError);
    }
}

}  // namespace sorvik::sips
