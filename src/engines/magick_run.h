#pragma once

#include <QString>

#include "platform/child_process.h"

namespace sorvik {

/// Whether a tool left a file there. Temporary outputs exist from the start, empty, so that an empty file
/// is none.
[[nodiscard]] bool hasContent(const QString& path);

enum class MagickOutcome {
    done,
    doneWithDamage,  ///< there is a file, and the tool said that data of the source's picture were missing
    failed,
    sourceRefused,  ///< the bundled launcher found the source cut off, empty or too large: no other tool would do
                    ///< better
};

/// The exit status by which the launcher says so.
inline constexpr int statusSourceRefused = 65;

/// As runMagickTask, and tells what kind of failure it was.
[[nodiscard]] MagickOutcome magickOutcome(const ChildSetup& task, const QString& outputPath, const QString& context);

/// Runs a `magick` task whose arguments are set, to its end. True only for exit status 0 with a file at
/// `outputPath`. A failure is logged as "<context>: <output>", unless the tool's words say that
/// the file itself is the trouble. `context` is a short label such as "JPEG Compression". Blocks.
[[nodiscard]] bool runMagickTask(const ChildSetup& task, const QString& outputPath, const QString& context);

/// Whether a tool's output blames the file: missing, unreadable, not of its kind.
[[nodiscard]] bool blamesTheFile(const QString& toolOutput);

/// A child's output as text; bytes that are not valid UTF-8 as a whole give `fallback`.
[[nodiscard]] QString decodedOutput(const QByteArray& output, const QString& fallback);

}  // namespace sorvik
