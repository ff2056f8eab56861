#pragma once

#include <QString>

#include "core/app_settings.h"
#include "core/vocabulary/formats.h"

namespace sorvik {

/// The texts laid round a name, inserted as they stand.
struct NameAffixes {
    QString outputPrefix;
    QString outputSuffix;
    QString compressionPrefix;
    QString compressionSuffix;
};

/// Those of the settings; all empty without settings.
[[nodiscard]] NameAffixes nameAffixes(const AppSettings* settings);

/// Where the result of a source goes: the same folder, the affixes that apply round the stem, the
/// format's extension. A compression's affixes stand inside a conversion's.
[[nodiscard]] QString composeOutputName(const QString& sourcePath, ImageFormat format, bool isConversion,
                                        bool isCompression, const NameAffixes& affixes);

/// The path of a batch's result for the settings as they are; `hasImageMagick` tells whether compression
/// can take place at all.
[[nodiscard]] QString outputPath(const QString& sourcePath, ImageFormat format, const AppSettings* settings,
                                 bool hasImageMagick);

/// The path of the result when a file is only compressed; with empty affixes the source itself.
[[nodiscard]] QString compressedPath(const QString& sourcePath, ImageFormat format, const AppSettings& settings);

/// Whether the settings ask for compression of an output of this format.
[[nodiscard]] bool wantsCompression(ImageFormat format, const AppSettings* settings);

}  // namespace sorvik
