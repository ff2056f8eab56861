#pragma once

#include <QString>
#include <QStringList>

#include <optional>

#include "codecs/sips_status.h"
#include "imaging/imaging_client.h"

namespace sorvik::imaging {

/// What the imaging tool tells of a picture file, by its content alone.
struct PictureFacts {
    QString kind;         ///< "jpeg", "png", "gif", "webp", "tiff", "heic", "avif", "pdf"
    int width = 0;        ///< pixels as stored, not turned (points of a PDF page); of the first page or frame
    int height = 0;       ///< likewise
    int pages = 0;        ///< pages, frames, top-level pictures
    int orientation = 1;  ///< of EXIF or TIFF, 1 to 8; 1 where the container turns the picture (HEIC, AVIF)
    bool alpha = false;   ///< an opacity channel; told of HEIC and AVIF alone
    bool extras = false;  ///< a PDF's forms, attachments, layers, signatures, restrictions
    bool whole = false;   ///< neither cut off nor damaged, as far as that can be told cheaply
    bool operator==(const PictureFacts&) const = default;
};

/// A file looked at; the facts are there exactly when the status is `finished`.
struct PictureDescription {
    codecs::SipsStatus status = codecs::SipsStatus::failed;
    QString message;  ///< on failure the reason in one line
    std::optional<PictureFacts> facts;
};

/// The vector of the tool.
[[nodiscard]] QStringList describeArguments(const QString& path);

/// What the tool printed, "kind=jpeg width=4000 height=3000 pages=1 orientation=6 alpha=no extras=no whole=yes"; absent
/// for anything else.
[[nodiscard]] std::optional<PictureFacts> parsePictureFacts(const QString& line);

/// Looks at a file in a process of its own. Any thread; blocks.
[[nodiscard]] PictureDescription describePicture(const ImagingClient& client, const QString& path);

}  // namespace sorvik::imaging
