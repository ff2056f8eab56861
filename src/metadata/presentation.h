#pragma once

#include <QString>
#include <QStringView>

namespace sorvik {

/// The plain English name of a property as `identify` prints it ("exif:Make"), in any letter case. Several
/// properties share a label. Empty when the property is not to be shown.
[[nodiscard]] QString displayLabel(const QString& key);

/// A property's value as people read it: with its unit, or its meaning in place of a code of the EXIF
/// standard (2.3, section 4.6). What has no entry stays as it is; fractions are not computed.
[[nodiscard]] QString formatValue(const QString& key, const QString& value);

}  // namespace sorvik
