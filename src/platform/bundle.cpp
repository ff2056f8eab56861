#include "platform/bundle.h"

#include "platform/files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

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

QString Bundle::info(const QString& key) const {
    const std::optional<QByteArray> bytes = readFile(root_ + QStringLiteral("/Contents/Info.json"));
    return QJsonDocument::fromJson(bytes.value_or(QByteArray())).object().value(key).toString();
}

}  // namespace sorvik
