#pragma once

#include <QString>

namespace sorvik {

/// Why a file is not taken up, or its result not written, in cases that no tool's words describe.
enum class Refusal {
    folder,
    namedPipe,
    socket,
    device,
    danglingLink,
    loopingLink,
    emptyFile,
    tooLarge,
    changedMeanwhile,
    outputNotAFile,
    outputNameTooLong,
    outputIsSource,
    framesWouldBeLost,
    documentWouldLose,
};

/// The sentence for the row.
[[nodiscard]] QString sentence(Refusal refusal);

}  // namespace sorvik
