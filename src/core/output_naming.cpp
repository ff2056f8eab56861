#include "core/output_naming.h"

#include <QStringView>

#include "core/vocabulary/path_names.h"

namespace sorvik {

NameAffixes nameAffixes(const AppSettings* settings) {
    if (settings == nullptr) {
        return {};
    }
    return {settings->outputPrefix, settings->outputSuffix, settings->compressionPrefix, settings->compressionSuffix};
}

QString composeOutputName(const QString& sourcePath, ImageFormat format, bool isConversion, bool isCompression,
                          const NameAffixes& affixes) {
    QString name = stem(sourcePath).toString();
    if (isCompression) {
        name = affixes.compressionPrefix + name + affixes.compressionSuffix;
    }
    if (isConversion) {
        name = affixes.outputPrefix + name + affixes.outputSuffix;
    }
    const QStringView folder = QStringView(sourcePath).chopped(fileName(sourcePath).size());
    return folder.toString() + name + u'.' + fileExtension(format);
}

bool wantsCompression(ImageFormat format, const AppSettings* settings) {
    if (settings == nullptr || !isCompressible(format)) {
        return false;
    }
    return settings->processingMode == ProcessingMode::compress || settings->convertCompressionEnabled;
}

QString outputPath(const QString& sourcePath, ImageFormat format, const AppSettings* settings, bool hasImageMagick) {
    const bool isConversion = settings == nullptr || settings->processingMode != ProcessingMode::compress;
    return composeOutputName(sourcePath, format, isConversion, hasImageMagick && wantsCompression(format, settings),
                             nameAffixes(settings));
}

QString compressedPath(const QString& sourcePath, ImageFormat format, const AppSettings& settings) {
    return composeOutputName(sourcePath, format, false, true, nameAffixes(&settings));
}

}  // namespace sorvik
