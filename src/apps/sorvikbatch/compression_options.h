#pragma once

#include <QString>

#include <array>
#include <optional>

#include "apps/sorvikbatch/common_options.h"
#include "core/app_settings.h"

namespace sorvik {

inline constexpr std::size_t qualityCount = 8;

/// How pictures are compressed, for the commands that compress.
struct CompressionOptions {
    QString prefix;
    QString suffix;
    std::array<std::optional<int>, qualityCount> qualities;  ///< as given: percent, or levels for PNG and GIF
};

/// Describes the options to the parser, which fills the object when it parses; the object must outlive it.
void describeCompression(CLI::App& command, CompressionOptions& options);

/// Lays what was given over the settings.
void applyCompression(const CompressionOptions& options, AppSettings& settings);

}  // namespace sorvik
