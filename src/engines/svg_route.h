#pragma once

#include <QString>
#include <QStringList>

#include <optional>

#include "engines/process_config_cache.h"

namespace sorvik {

/// The drawing tool: the first of the candidates at which a file exists. Looked up at each call.
[[nodiscard]] std::optional<QString> findSorvikDraw(const QStringList& candidates);

/// The whole vector. `format` is the tool's word for it.
[[nodiscard]] QStringList sorvikDrawArguments(const QString& inputPath, const QString& outputPath,
                                              const QString& format);

/// Has the drawing tool draw an SVG file. `format` is an extension as sipsFormat() gives it. True when the tool ended
/// with status 0, which it does only when the output is written; all else is logged. Blocks.
[[nodiscard]] bool convertSVGWithSorvikDraw(const ProcessConfigCache& tools, const QString& inputPath,
                                            const QString& outputPath, const QString& format);

}  // namespace sorvik
