#pragma once

#include <QString>

#include "core/vocabulary/formats.h"

namespace sorvik {

/// A name in the temporary directory for what a compression recipe writes. Nothing stands there at first; whatever
/// stands there in the end goes with the object.
class CompressedTempFile {
public:
    explicit CompressedTempFile(ImageFormat format);
    ~CompressedTempFile();
    CompressedTempFile(const CompressedTempFile&) = delete;
    CompressedTempFile& operator=(const CompressedTempFile&) = delete;

    [[nodiscard]] const QString& path() const { return path_; }

private:
    QString path_;
};

}  // namespace sorvik
