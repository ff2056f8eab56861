#pragma once

#include <QString>

#include <optional>
#include <vector>

#include "core/app_settings.h"
#include "core/file_processing_view_model.h"

namespace sorvik {

/// All that the bottom bar shows.
struct BottomBarState {
    qsizetype filesCount = 0;
    bool isConverting = false;
    ProcessingMode processingMode = ProcessingMode::convert;
    qsizetype selectedCount = 0;
    std::optional<InputFormat> selectedFormat;  ///< of all checked rows
    std::vector<ImageFormat> availableOutputFormats;
    std::optional<ImageFormat> selectedOutputFormat;
    int completedCount = 0;
    int totalCount = 0;
    QString message;  ///< how the last batch ended

    bool operator==(const BottomBarState&) const = default;
};

[[nodiscard]] BottomBarState bottomBarState(const FileProcessingViewModel& list, const AppSettings& settings,
                                            std::optional<ImageFormat> bulkOutputFormat);

// Its texts.
[[nodiscard]] QString readyText(qsizetype filesCount);
[[nodiscard]] QString selectedText(const BottomBarState& state);
[[nodiscard]] QString primaryText(const BottomBarState& state);
[[nodiscard]] QString progressText(const BottomBarState& state);

}  // namespace sorvik
