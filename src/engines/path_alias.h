#pragma once

#include <QString>
#include <QStringView>

#include <memory>
#include <optional>

class QTemporaryDir;

namespace sorvik {

/// Whether a tool would read some character of an input's path as a pattern or an index.
[[nodiscard]] bool isInputSyntax(QStringView path);

/// The same for an output's path, where a percent sign expands too.
[[nodiscard]] bool isOutputSyntax(QStringView path);

/// The name under which a file reaches a tool. It is the path itself where that is plain. A path that
/// the tool would read as syntax gets a neutral name in a private folder: for an input a link to the
/// file, for an output a file that moves to its place when the tool has succeeded. Lives
/// across the tool's run.
class PathAlias {
public:
    static PathAlias forInput(const QString& path);
    static PathAlias forOutput(const QString& path);
    ~PathAlias();
    PathAlias(PathAlias&&) noexcept;
    PathAlias& operator=(PathAlias&&) = delete;

    /// What goes into the tool's arguments. Empty when no neutral name could be made.
    [[nodiscard]] const QString& path() const { return path_; }

    /// Brings an output to its own path; nothing to do for plain paths. False when that failed.
    [[nodiscard]] bool settle() const;

private:
    PathAlias(QString path, QString target, std::unique_ptr<QTemporaryDir> folder);
    static std::unique_ptr<QTemporaryDir> makeFolder();

    QString path_;
    QString target_;
    std::unique_ptr<QTemporaryDir> folder_;
};

}  // namespace sorvik
