#pragma once

#include <QString>

#include <optional>

namespace sorvik {

/// The folder that holds the program's tools and data: Contents/Resources, Contents/Frameworks,
/// Contents/Info.json. It stands at lib/sorvik beside the bin/ of the running program;
/// the environment variable SORVIK_BUNDLE names another one.
class Bundle {
public:
    explicit Bundle(const QString& root);

    /// The running program's. Made on first use, any thread.
    static const Bundle& main();

    [[nodiscard]] const QString& root() const { return root_; }

    /// Absent when the folder does not exist.
    [[nodiscard]] std::optional<QString> resourceDirectory() const;

    /// Path of a file in the resource directory; absent when it is not there.
    [[nodiscard]] std::optional<QString> resource(const QString& name) const;

    /// The path, whether or not the folder exists.
    [[nodiscard]] QString frameworksDirectory() const;

    /// A text of Contents/Info.json; empty when the file can't be read, is no JSON, or has no text of that name.
    [[nodiscard]] QString info(const QString& key) const;

private:
    QString root_;
};

}  // namespace sorvik
