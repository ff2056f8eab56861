#include "core/compressed_temp_file.h"

#include <QUuid>

#include "services/temporary_files.h"

namespace sorvik {

CompressedTempFile::CompressedTempFile(ImageFormat format)
    : path_(QStringLiteral("%1/sorvik_compressed_%2.%3")
                .arg(SharedTempFileManager::shared().tempDirectory(),
                     QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(), fileExtension(format))) {}

CompressedTempFile::~CompressedTempFile() { SharedTempFileManager::remove(path_); }

}  // namespace sorvik
