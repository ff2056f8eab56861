#pragma once

#include <QMap>
#include <QString>
#include <QUrl>

namespace sorvik {

/// Whether a picture holds metadata worth showing, and what it is, as ImageMagick's `identify` sees it. Both
/// operations block for the tool's run, so never on the event loop's thread; the second look at a file
/// costs no run. Every failure looks like a file without metadata. Any thread.
class MetadataUtilities {
public:
    MetadataUtilities() = delete;

    /// May be true for a file whose table is empty, as values are not looked at.
    [[nodiscard]] static bool hasMetadata(const QUrl& url);

    /// Labels and values as shown, in the order in which they are shown: by label, by code units.
    [[nodiscard]] static QMap<QString, QString> readMetadata(const QUrl& url);
};

}  // namespace sorvik
