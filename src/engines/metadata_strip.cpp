#include "engines/metadata_strip.h"

#include <QFileInfo>

#include "engines/image_magick_recipes.h"
#include "engines/magick_run.h"
#include "engines/path_alias.h"
#include "engines/path_safety.h"
#include "platform/files.h"
#include "platform/log.h"
#include "services/temporary_files.h"

namespace sorvik {
namespace {

void logConverter(Replacer copy, const QString& line) {
    const bool general = copy == Replacer::imageConverter;
    logLine((general ? QStringLiteral("[ImageConverter] ") : QStringLiteral("[SIPSConverter] ")) + line);
}

QString tempPrefix(Replacer copy) {
    return copy == Replacer::imageConverter ? QStringLiteral("sorvik_imageconverter") : QStringLiteral("sorvik_sips");
}

/// The path as the tool gets it. Only the general copy has the gate; `refusal` is its line.
std::optional<QString> passed(Replacer copy, const QString& path, const QString& refusal) {
    if (copy == Replacer::sipsConverter) {
        return path;
    }
    auto normal = normalizedPath(path, GateCaller::imageConverter);
    if (!normal) {
        logConverter(copy, refusal + path);
    }
    return normal;
}

/// Runs the tool and looks that it has written something: it can end well without.
bool writeStripped(const ProcessConfigCache& tools, const QString& magick, const QString& path, const QString& format,
                   const QString& output, Replacer copy) {
    const PathAlias from = PathAlias::forInput(path);
    const PathAlias to = PathAlias::forOutput(output);
    ChildSetup setup;
    setup.executable = magick;
    setup.arguments = stripArguments(from.path(), format, to.path());
    setup.environment = stripEnvironment(processEnvironment(), magick, tools.bundle().frameworksDirectory());
    setup.output = ChildSetup::Output::discarded;
    const ChildResult child = runChild(setup);
    const bool written = child.succeeded() && to.settle() && hasContent(output);
    if (copy == Replacer::sipsConverter && !child.started) {
        logConverter(copy, QStringLiteral("Error running ImageMagick for metadata strip: ") + child.launchError);
    } else if (copy == Replacer::sipsConverter && !written) {
        logConverter(copy, QStringLiteral("ImageMagick process failed or temp file not created for ") + path);
    }
    return written;
}

}  // namespace

QStringList stripArguments(const QString& path, const QString& format, const QString& output) {
    return QStringList{path} + metadataArguments(format) + QStringList{output};
}

Environment stripEnvironment(const Environment& inherited, const QString& magick, const QString& frameworks) {
    const auto path = QStringLiteral("PATH");
    const auto libraries = QStringLiteral("LD_LIBRARY_PATH");
    const QString folder = QFileInfo(magick).path();
    Environment environment = inherited;
    if (!inherited.contains(path)) {
        environment[path] = folder;
    } else if (!inherited.value(path).contains(folder)) {
        environment[path] = folder + u':' + inherited.value(path);
    }
    environment[libraries] = prependedPath(frameworks, inherited.value(libraries));
    return environment;
}

bool stripMetadata(ProcessConfigCache& tools, const QString& path, const QString& format, Replacer copy) {
    const auto magick = tools.resolveMagickPath();
    if (!magick) {
        if (copy == Replacer::sipsConverter) {
            logConverter(copy, QStringLiteral("ImageMagick not found for metadata stripping."));
        }
        return false;
    }
    const auto input = passed(copy, path, QStringLiteral("Invalid or unsafe file path: "));
    if (!input) {
        return false;
    }
    try {
        const TempFile stripped(tempPrefix(copy), format);
        const auto output = passed(copy, stripped.path(), QStringLiteral("Invalid temporary output path: "));
        return output && writeStripped(tools, *magick, *input, format, *output, copy) &&
               replaceFile(*input, *output, copy);
    } catch (const TemporaryFileError& error) {
        logConverter(copy,
                     QStringLiteral("Failed to create temporary output file: ") + QString::fromUtf8(error.what()));
        return false;
    }
}

QByteArray strippedBytes(ProcessConfigCache& tools, const QByteArray& bytes, const QString& format) {
    try {
        const TempFile file(tempPrefix(Replacer::imageConverter), format);
        if (const auto error = writeAtomically(file.path(), bytes)) {
            logConverter(Replacer::imageConverter, error->description);
            return bytes;
        }
        const bool stripped = stripMetadata(tools, file.path(), format, Replacer::imageConverter);
        return stripped ? readFile(file.path()).value_or(bytes) : bytes;
    } catch (const TemporaryFileError& error) {
        logConverter(Replacer::imageConverter, QString::fromUtf8(error.what()));
        return bytes;
    }
}

}  // namespace sorvik
