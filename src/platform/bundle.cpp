#include "platform/bundle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace sorvik {
namespace {

QString programsRoot() {
    const QString named = qEnvironmentVariable("SORVIK_BUNDLE");
    return named.isEmpty() ? QCoreApplication::applicationDirPath() + QStringLiteral("/../lib/sorvik") : named;
}

}  // namespace

// Absolute, since children get these paths and run in other working directories.
Bundle::Bundle(const QString& root) : root_(QDir::cleanPath(QFileInfo(root).absoluteFilePath())) {}

const Bundle& Bundle::main() {
    static const Bundle bundle(programsRoot());
    return bundle;
}

std::optional<QString> Bundle::resourceDirectory() const {
    const QString directory = root_ + QStringLiteral("/Contents/Resources");
    return QFileInfo(directory).isDir() ? std::optional(directory) : std::nullopt;
}

std::optional<QString> Bundle::resource(const QString& name) const {
    const std::optional<QString> directory = resourceDirectory();
    if (!directory) {
        return std::nullopt;
    }
    const QString path = *directory + QLatin1Char('/') + name;
    return QFileInfo(path).isFile() ? std::optional(path) : std::nullopt;
}

QString Bundle::frameworksDirectory() const { return root_ + QStringLiteral("/Contents/Frameworks"); }

}  // namespace sorvik
