#pragma once

#include <QString>
#include <QStringList>

#include "engines/process_config_cache.h"

namespace sorvik {

/// What a quality becomes for a PDF.
struct PdfTier {
    const char* preset;  ///< of pdfwrite's /PDFSETTINGS
    int jpegQuality;     ///< 0 to 100
    int resolution;      ///< of embedded pictures, dots an inch; finer ones are scaled down to it
};

/// The tier of a quality. Up to 1.0 it counts as a fraction, above as percent: 0.9 and 90 mean the same, and 1
/// is the top.
[[nodiscard]] PdfTier pdfTier(double quality);

/// The whole vector.
[[nodiscard]] QStringList pdfCompressionArguments(const QString& input, const PdfTier& tier, const QString& output);

/// Writes a PDF anew by Ghostscript's `pdfwrite`. True when it ended well and left a file; it also does so for
/// damaged input and on a full disk, so that the caller has to look at the result. Logs its steps. Blocks.
[[nodiscard]] bool compressPDF(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                               double quality);

}  // namespace sorvik
