#pragma once

#include <QString>
#include <QUrl>
#include <QUuid>

#include <cstdint>
#include <optional>

#include "core/vocabulary/formats.h"

namespace sorvik {

/// The visible stage of a row.
enum class ConversionStatus { waiting, converting, compressing, done };

/// The word for a stage: "waiting" and so on.
[[nodiscard]] QString rawValue(ConversionStatus status);

/// One row of the work list.
struct FileItem {
    QUuid id;                                   ///< the row's identity, new at intake
    QUrl url;                                   ///< the source
    std::int64_t originalSize = 0;              ///< bytes at intake; 0 if it could not be read
    bool isProcessed = false;                   ///< finished with success; the next batch skips it
    bool isOptimized = false;                   ///< nothing sets it
    bool isSelected = false;                    ///< mirrors membership of the checked rows
    std::optional<InputFormat> inputFormat;     ///< absent for an unknown extension
    std::optional<ImageFormat> outputFormat;    ///< the target
    std::optional<QString> errorMessage;        ///< what the row shows in red
    std::optional<bool> hasMetadata;            ///< absent until somebody has looked
    std::optional<std::int64_t> outputSize;     ///< final size of the output, bytes
    std::optional<std::int64_t> convertedSize;  ///< size before compression after conversion, bytes
    ConversionStatus conversionStatus = ConversionStatus::waiting;
    bool wasCompressed = false;  ///< the output went through a compression recipe

    bool operator==(const FileItem&) const = default;

    /// The source's path; empty for a URL that is no local file.
    [[nodiscard]] QString path() const { return url.toLocalFile(); }

    /// The last path component.
    [[nodiscard]] QString name() const;

    /// What compression saved: "12.5%", or "0%" for a saving of at most half a percent. Absent unless the
    /// row was compressed.
    [[nodiscard]] std::optional<QString> savingsText() const;
};

}  // namespace sorvik
