#include "engines/path_alias.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <utility>

#include "core/vocabulary/path_names.h"
#include "platform/files.h"
#include "platform/log.h"
#include "services/temporary_files.h"

namespace sorvik {
namespace {

constexpr QStringView inputSyntax = u"[]*?{}";
constexpr QStringView outputSyntax = u"[]*?{}%";

bool holdsAny(QStringView path, QStringView characters) {
    return std::ranges::any_of(path, [&](QChar character) { return characters.contains(character); });
}

/// A neutral file name that keeps the extension, by which the tools choose their coder.
QString neutralName(const QString& stem, QStringView path) {
    const QStringView extension = pathExtension(path);
    const bool plain =
        std::ranges::all_of(extension, [](QChar c) { return c.isLetterOrNumber() && c.unicode() < 128; });
    return extension.isEmpty() || !plain ? stem : QString(stem).append(u'.').append(extension);
}

}  // namespace

bool isInputSyntax(QStringView path) { return holdsAny(path, inputSyntax); }
bool isOutputSyntax(QStringView path) { return holdsAny(path, outputSyntax); }

PathAlias::PathAlias(QString path, QString target, std::unique_ptr<QTemporaryDir> folder)
    : path_(std::move(path)), target_(std::move(target)), folder_(std::move(folder)) {}
PathAlias::PathAlias(PathAlias&&) noexcept = default;
PathAlias::~PathAlias() = default;

std::unique_ptr<QTemporaryDir> PathAlias::makeFolder() {
    // The temporary directory itself may lie under a name that a tool would read as syntax.
    for (const QString& base : {systemTempDirectory(), QStringLiteral("/tmp"), QStringLiteral("/var/tmp")}) {
        if (isOutputSyntax(base)) {
            continue;
        }
        auto folder = std::make_unique<QTemporaryDir>(base + QStringLiteral("/sorvik_alias_XXXXXX"));
        if (folder->isValid()) {
            return folder;
        }
    }
    return nullptr;
}

PathAlias PathAlias::forInput(const QString& path) {
    if (!isInputSyntax(path)) {
        return {path, path, nullptr};
    }
    auto folder = makeFolder();
    if (!folder) {
        return {QString(), path, nullptr};
    }
    const QString link = folder->filePath(neutralName(QStringLiteral("input"), path));
    const QString target = QDir::isAbsolutePath(path) ? path : QDir::current().absoluteFilePath(path);
    const bool linked = QFile::link(target, link);
    return {linked ? link : QString(), path, std::move(folder)};
}

PathAlias PathAlias::forOutput(const QString& path) {
    if (!isOutputSyntax(path)) {
        return {path, path, nullptr};
    }
    auto folder = makeFolder();
    QString alias = folder ? folder->filePath(neutralName(QStringLiteral("output"), path)) : QString();
    return {std::move(alias), path, std::move(folder)};
}

bool PathAlias::settle() const {
    if (path_ == target_) {
        return true;
    }
    const auto error = moveFile(path_, target_);
    if (error) {
        logLine(QStringLiteral("[ImageMagickConverter] Could not move the output into place: ") + error->description);
    }
    return !error;
}

}  // namespace sorvik
