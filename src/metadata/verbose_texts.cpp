#include "metadata/verbose_texts.h"

#include <QFileInfo>

#include "core/vocabulary/path_names.h"
#include "engines/path_alias.h"
#include "platform/log.h"

namespace sorvik {
namespace {

/// Nothing but a regular file: a tool would wait for a FIFO for ever.
bool isReadableFile(const QString& path) {
    const QFileInfo file(path);
    return file.isFile() && file.isReadable();
}

/// A text that was cut would end inside a line, or inside a character.
QByteArrayView wholeLines(const QByteArray& output) {
    const QByteArrayView text = output;
    return output.size() < childDocumentLimit ? text : text.first(text.lastIndexOf('\n') + 1);
}

}  // namespace

Environment identifyEnvironment(const Environment& inherited, const QString& toolDirectory,
                                const QString& libraryDirectory) {
    const auto path = QStringLiteral("PATH");
    const auto libraries = QStringLiteral("LD_LIBRARY_PATH");
    Environment environment = inherited;
    const QString before = inherited.value(path);
    environment[path] = before.contains(toolDirectory) ? toolDirectory : prependedPath(toolDirectory, before);
    environment[libraries] = prependedPath(libraryDirectory, inherited.value(libraries));
    return environment;
}

VerboseTexts& VerboseTexts::shared() {
    static VerboseTexts texts(ProcessConfigCache::shared());
    return texts;
}

std::optional<QString> VerboseTexts::text(const QString& path) {
    if (!isReadableFile(path)) {
        logLine(QStringLiteral("MetadataUtilities: File not found or not readable at ") + path);
        return std::nullopt;
    }
    const auto magick = tools_.resolveMagickPath();
    if (!magick) {
        logLine(QStringLiteral("MetadataUtilities: ImageMagick not found in expected location."));
        return std::nullopt;
    }
    if (auto known = cached(path)) {
        return known;
    }
    auto text = identify(*magick, path);
    if (text) {
        const std::scoped_lock guard(lock_);
        texts_.insert(path, *text);
    }
    return text;
}

std::optional<QString> VerboseTexts::cached(const QString& path) {
    const std::scoped_lock guard(lock_);
    const auto found = texts_.constFind(path);
    return found == texts_.cend() ? std::nullopt : std::optional(*found);
}

std::optional<QString> VerboseTexts::identify(const QString& magick, const QString& path) const {
    const PathAlias alias = PathAlias::forInput(path);
    if (alias.path().isEmpty()) {
        return std::nullopt;
    }
    ChildSetup setup;
    setup.executable = magick;
    setup.arguments = {QStringLiteral("identify"), QStringLiteral("-verbose"), alias.path()};
    setup.environment =
        identifyEnvironment(processEnvironment(), parentDirectory(magick), tools_.bundle().frameworksDirectory());
    setup.output = ChildSetup::Output::document;
    const ChildResult result = runChild(setup);
    if (!result.started) {
        logLine(QStringLiteral("MetadataUtilities: Failed to run magick identify for %1: %2")
                    .arg(path, result.launchError));
    }
    if (!result.succeeded()) {
        return std::nullopt;
    }
    const QByteArrayView lines = wholeLines(result.output);
    return lines.isValidUtf8() ? QString::fromUtf8(lines) : QString();
}

}  // namespace sorvik
