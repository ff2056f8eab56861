#include "ui/bottom_bar_state.h"

namespace sorvik {

BottomBarState bottomBarState(const FileProcessingViewModel& list, const AppSettings& settings,
                              std::optional<ImageFormat> bulkOutputFormat) {
    BottomBarState state;
    state.filesCount = static_cast<qsizetype>(list.files().size());
    state.isConverting = list.isConverting;
    state.processingMode = settings.processingMode;
    state.selectedCount = static_cast<qsizetype>(list.selectedFileItems().size());
    if (list.selectedFormats().size() == 1) {
        state.selectedFormat = *list.selectedFormats().begin();
    }
    state.availableOutputFormats = list.commonOutputFormats();
    state.selectedOutputFormat = bulkOutputFormat;
    state.completedCount = list.completedCount;
    state.totalCount = list.totalCount;
    state.message = list.batchCompletionMessage.value().value_or(QString());
    return state;
}

QString readyText(qsizetype filesCount) {
    return filesCount == 1 ? QStringLiteral("1 image ready. Drag more images to add them.")
                           : QStringLiteral("%1 images ready. Drag more images to add them.").arg(filesCount);
}

QString selectedText(const BottomBarState& state) {
    const QString what = state.selectedFormat ? rawValue(*state.selectedFormat) : QStringLiteral("files");
    return QStringLiteral("%1 %2 selected").arg(state.selectedCount).arg(what);
}

QString primaryText(const BottomBarState& state) {
    if (state.processingMode == ProcessingMode::convert) {
        return state.isConverting ? QStringLiteral("Converting...") : QStringLiteral("Convert");
    }
    return state.isConverting ? QStringLiteral("Compressing...") : QStringLiteral("Compress");
}

QString progressText(const BottomBarState& state) {
    return QStringLiteral("%1 of %2").arg(state.completedCount).arg(state.totalCount);
}

}  // namespace sorvik
