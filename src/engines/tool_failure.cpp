#include "engines/tool_failure.h"

#include <QStorageInfo>

#include "services/temporary_files.h"

namespace sorvik {
namespace {

constexpr qint64 fullDisk = 1 << 20;  // bytes left; below it a failed write is the likely cause

}  // namespace

ConversionError toolFailure() {
    const QStorageInfo volume(SharedTempFileManager::shared().tempDirectory());
    const bool full = volume.isValid() && volume.bytesAvailable() < fullDisk;
    return full ? ConversionError(QStringLiteral("No space left on device")) : ConversionError();
}

}  // namespace sorvik
