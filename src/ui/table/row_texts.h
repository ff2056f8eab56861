#pragma once

#include <QString>

#include <span>

#include "core/file_item.h"

namespace sorvik {

/// What stands where there is no value.
[[nodiscard]] QString noValue();

/// The size of the output.
[[nodiscard]] QString sizeText(const FileItem& item);
[[nodiscard]] QString savingText(const FileItem& item);
[[nodiscard]] QString inputText(const FileItem& item);

/// The targets that a row offers; none without an input format.
[[nodiscard]] std::span<const ImageFormat> offeredFormats(const FileItem& item);

/// The target that a row's picker shows. To be asked only of rows with an input format.
[[nodiscard]] ImageFormat shownFormat(const FileItem& item);

/// What the status cell shows.
struct StatusLook {
    enum class Kind { invalid, waiting, done, busy };
    Kind kind = Kind::waiting;
    QString label;
};

[[nodiscard]] StatusLook statusLook(const FileItem& item, bool isConverting);

}  // namespace sorvik
