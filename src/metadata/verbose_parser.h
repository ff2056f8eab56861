#pragma once

#include <QMap>
#include <QString>
#include <QStringView>

namespace sorvik {

/// Whether a property of this name, in any letter case, counts as metadata: camera, place, author, profiles. What
/// the tool works out about every picture (geometry, depth, statistics) does not.
[[nodiscard]] bool isDisplayableKey(const QString& key);

/// Whether a line of `identify -verbose` text holds such a property, whatever its value. The table of a text for
/// which this is true may still be empty.
[[nodiscard]] bool holdsMetadata(QStringView verboseText);

/// The table from labels to values, both as shown; a later property with the same label replaces an earlier one.
/// A map's order is the one in which the entries are shown.
[[nodiscard]] QMap<QString, QString> parseMetadata(QStringView verboseText);

}  // namespace sorvik
