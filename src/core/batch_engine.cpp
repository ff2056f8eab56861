#include "core/batch_engine.h"

#include "engines/file_replacement.h"
#include "engines/image_signature.h"
#include "engines/process_config_cache.h"
#include "engines/result_cache.h"

namespace sorvik {

bool SystemBatchEngine::hasImageMagick() { return ProcessConfigCache::shared().resolveMagickPath().has_value(); }

QByteArray SystemBatchEngine::convertFile(const QString& path, ImageFormat format, bool stripMetadata, double quality) {
    return converter_.convertFile(path, format, stripMetadata, quality);
}

QByteArray SystemBatchEngine::convertEPS(const QString& path, ImageFormat format, bool stripMetadata, double quality) {
    return converter_.convertEPS(path, format, stripMetadata, quality);
}

QByteArray SystemBatchEngine::convertAI(const QString& path, ImageFormat format, double quality) {
    return converter_.convertAI(path, format, quality);
}

void SystemBatchEngine::compress(ImageFormat format, const QString& inputPath, const QString& outputPath, double value,
                                 CompressedFor purpose) {
    compressPicture(ProcessConfigCache::shared(), format, inputPath, outputPath, value, purpose);
}

void SystemBatchEngine::replaceFile(const QString& originalPath, const QString& newContentPath) {
    QString reason;
    if (!sorvik::replaceFile(originalPath, newContentPath, Replacer::imageConverter, &reason)) {
        throw ConversionError(reason);
    }
}

bool SystemBatchEngine::hasSignature(const QByteArray& bytes, ImageFormat format) {
    return sorvik::hasSignature(bytes, format);
}

bool SystemBatchEngine::isValidImageFile(const QString& path, ImageFormat format) {
    return sorvik::isValidImageFile(path, format);
}

void SystemBatchEngine::clearResultCache() { ResultCache::shared().clear(); }
void SystemBatchEngine::clearSignatureCache() { sorvik::clearSignatureCache(); }

}  // namespace sorvik
