#pragma once

#include <QString>
#include <QStringList>

#include <variant>

#include "core/vocabulary/formats.h"

namespace sorvik {

/// What `sorvikbatch convert` is asked to do.
struct ConvertOptions {
    ImageFormat to = ImageFormat::png;
    bool stripMetadata = false;
    QString outputPrefix;
    QString outputSuffix;
    bool json = false;
    bool verbose = false;
    QStringList files;  ///< absolute paths
};

/// A text to print and a status to end with, in place of work.
struct Answer {
    QString text;
    int status = 0;  ///< 0: on standard output (help, version); 2: on standard error (bad usage)
};

inline constexpr int statusSuccess = 0;
inline constexpr int statusRowFailed = 1;
inline constexpr int statusBadUsage = 2;

/// Reads the command line, the program's name first. Relative files are taken from `folder`.
[[nodiscard]] std::variant<ConvertOptions, Answer> parseCommandLine(const QStringList& arguments,
                                                                    const QString& folder);

}  // namespace sorvik
