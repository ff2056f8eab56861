#include "engines/ghostscript_run.h"

#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/vocabulary/path_names.h"
#include "services/temporary_files.h"

namespace sorvik {
namespace {

// A PDF that was repaired may be drawn in full; one without its end, or with something left out, is not to be trusted.
constexpr std::array damages{"Output may be incorrect", "No pages will be processed", "no startxref token found",
                             "couldn't repair PDF file"};

}  // namespace

QStringList ghostscriptArguments(const QString& device, const QString& output, std::optional<double> jpegQuality,
                                 const QString& input) {
    QStringList arguments{QStringLiteral("-sstdout=%stderr"),
                          QStringLiteral("-dNOSAFER"),
                          QStringLiteral("-dBATCH"),
                          QStringLiteral("-dNOPAUSE"),
                          QStringLiteral("-dNOPROMPT"),
                          QStringLiteral("-dMaxBitmap=500000000"),
                          QStringLiteral("-dAlignToPixels=0"),
                          QStringLiteral("-dGridFitTT=2"),
                          QStringLiteral("-r300"),
                          QStringLiteral("-sDEVICE=") + device,
                          QStringLiteral("-sOutputFile=") + output};
    if (jpegQuality) {
        arguments << QStringLiteral("-dJPEGQ=") + QString::number(std::trunc(*jpegQuality * 100.0), 'f', 0);
    }
    return arguments << input;
}

QString stepPath(const QString& outputPath, const QString& ending) {
    const QStringView extension = pathExtension(outputPath);
    return outputPath.chopped(extension.isEmpty() ? 0 : extension.size() + 1) + ending;
}

ChildSetup ghostscriptTask(const ProcessConfigCache& tools, const QString& path, const QStringList& arguments) {
    ChildSetup task;
    task.executable = path;
    task.arguments = arguments;
    task.environment = ghostscriptEnvironment(processEnvironment(), tools.bundle().resourceDirectory(),
                                              tools.bundle().frameworksDirectory());
    task.workingDirectory = tools.bundle().resourceDirectory().value_or(QString());
    return task;
}

ChildResult runGhostscript(ChildSetup task) {
    const QTemporaryDir own(systemTempDirectory() + QStringLiteral("/sorvik_gs_XXXXXX"));
    if (own.isValid() && task.environment) {
        task.environment->insert(QStringLiteral("TMPDIR"), own.path());
    }
    return runChild(task);
}

bool tellsOfDamage(const QString& toolOutput) {
    return std::ranges::any_of(damages,
                               [&](const char* phrase) { return toolOutput.contains(QLatin1StringView(phrase)); });
}

}  // namespace sorvik
