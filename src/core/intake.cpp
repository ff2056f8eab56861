#include "core/intake.h"

#include "core/vocabulary/path_names.h"
#include "platform/files.h"

namespace sorvik {

FileItem makeFileItem(const QUrl& url, ProcessingMode mode, const FormatResolver& targets) {
    FileItem item;
    item.id = QUuid::createUuid();
    item.url = url;
    item.originalSize = fileSize(item.path()).value_or(0);
    item.inputFormat = detectInputFormat(pathExtension(item.name()).toString().toLower());
    if (!item.inputFormat) {
        item.errorMessage = QStringLiteral("Not supported format");
        return item;
    }
    item.outputFormat = targets.defaultFormat(*item.inputFormat);
    if (mode == ProcessingMode::compress && !isCompressible(*item.inputFormat)) {
        item.errorMessage = QStringLiteral("Not supported for compression");
    }
    return item;
}

}  // namespace sorvik
