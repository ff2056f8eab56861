#pragma once

#include <QString>
#include <QStringView>

namespace sorvik {

/// The last component of a path: "a.png" of "/x/a.png".
[[nodiscard]] QStringView fileName(QStringView path);

/// The text behind the last dot of a path's last component. Empty without a dot, behind a trailing one,
/// and for a name whose only dot is its first character.
[[nodiscard]] QStringView pathExtension(QStringView path);

/// The last component of a path without its last extension and the dot before it.
[[nodiscard]] QStringView stem(QStringView path);

/// The path with its last extension replaced, or with one added where there is none.
[[nodiscard]] QString replacingExtension(QStringView path, QStringView extension);

/// The path of the folder that holds it: "/x" of "/x/a.png", "/" of "/a.png".
[[nodiscard]] QString parentDirectory(QStringView path);

}  // namespace sorvik
