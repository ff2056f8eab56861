#include "engines/svg_route.h"

#include <QFileInfo>

#include <algorithm>

#include "engines/magick_run.h"
#include "platform/child_process.h"
#include "platform/log.h"

namespace sorvik {
namespace {

bool runSorvikDraw(const ChildSetup& task) {
    const ChildResult child = runChild(task);
    if (!child.started) {
        logLine(QStringLiteral("Failed to run sorvikdraw: ") + child.launchError);
        return false;
    }
    const QString output = decodedOutput(child.output, QString());
    if (!output.isEmpty()) {
        logLine(QStringLiteral("sorvikdraw output: ") + output);
    }
    if (!child.succeeded()) {
        logLine(QStringLiteral("sorvikdraw failed with exit code %1").arg(child.exitStatus));
    }
    return child.succeeded();
}

}  // namespace

std::optional<QString> findSorvikDraw(const QStringList& candidates) {
    const auto found = std::ranges::find_if(candidates, [](const QString& path) { return QFileInfo::exists(path); });
    return found == candidates.end() ? std::nullopt : std::optional(*found);
}

QStringList sorvikDrawArguments(const QString& inputPath, const QString& outputPath, const QString& format) {
    return {inputPath, QStringLiteral("--format"), format, QStringLiteral("--output"), outputPath};
}

bool convertSVGWithSorvikDraw(const ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                              const QString& format) {
    const std::optional<QString> tool = findSorvikDraw(tools.sorvikdrawCandidates());
    if (!tool) {
        logLine(QStringLiteral("sorvikdraw CLI not found."));
        return false;
    }
    if (!QFileInfo::exists(inputPath)) {
        logLine(QStringLiteral("Input SVG file does not exist: ") + inputPath);
        return false;
    }
    ChildSetup task;
    task.executable = *tool;
    task.arguments = sorvikDrawArguments(inputPath, outputPath, format);
    return runSorvikDraw(task);
}

}  // namespace sorvik
