#pragma once

#include <QString>
#include <QStringList>

#include <variant>

#include "apps/sorvikbatch/compress_options.h"
#include "apps/sorvikbatch/convert_options.h"
#include "apps/sorvikbatch/metadata_options.h"

namespace sorvik {

/// A text to print and a status to end with, in place of work.
struct Answer {
    QString text;
    int status = 0;  ///< 0: on standard output (help, version); 2: on standard error (bad usage)
};

inline constexpr int statusSuccess = 0;
inline constexpr int statusRowFailed = 1;
inline constexpr int statusBadUsage = 2;

using CommandLine = std::variant<ConvertOptions, CompressOptions, MetadataOptions, Answer>;

/// Reads the command line, the program's name first. Relative files are taken from `folder`.
[[nodiscard]] CommandLine parseCommandLine(const QStringList& arguments, const QString& folder);

}  // namespace sorvik
