#include "core/compress_file.h"

#include <QDir>
#include <QFileInfo>

#include "core/compressed_temp_file.h"
#include "core/vocabulary/path_names.h"
#include "engines/source_check.h"
#include "platform/files.h"

namespace sorvik {
namespace {

void throwIf(const std::optional<ConversionError>& refusal) {
    if (refusal) {
        throw ConversionError(*refusal);
    }
}

FileIdentity identityOrThrow(const QString& path) {
    const auto identity = fileIdentity(path);
    return identity ? *identity : throw ConversionError(QStringLiteral("No such file or directory"));
}

void checkSignature(BatchEngine& engine, const QString& path, ImageFormat format) {
    if (!engine.isValidImageFile(path, format)) {
        throw ConversionError();
    }
}

/// Brings the result to its place.
void place(BatchEngine& engine, const CompressJob& job, const FileIdentity& source, const QString& compressed) {
    if (fileIdentity(job.sourcePath) != source) {
        throw ConversionError(Refusal::changedMeanwhile);
    }
    if (fileIdentity(job.outputPath) == source) {
        engine.replaceFile(job.outputPath, compressed);
    } else if (const auto error = moveFile(compressed, job.outputPath)) {
        throw ConversionError(error->description);
    }
}

}  // namespace

QString checkCompression(const CompressJob& job) {
    throwIf(checkSource(job.sourcePath));
    const QString standing = QFileInfo(job.outputPath).canonicalFilePath();
    throwIf(checkDestination(standing.isEmpty() ? job.outputPath : standing));
    const QString folder = QDir(parentDirectory(job.outputPath)).canonicalPath();
    return standing.isEmpty() ? folder + u'/' + fileName(job.outputPath).toString() : standing;
}

std::int64_t compressFile(BatchEngine& engine, const CompressJob& job) {
    const FileIdentity source = identityOrThrow(job.sourcePath);
    const CompressedTempFile compressed(job.format);
    const bool inPlace = fileIdentity(job.outputPath) == source;
    engine.compress(job.format, job.sourcePath, compressed.path(), job.value,
                    inPlace ? CompressedFor::replacement : CompressedFor::itself);
    checkSignature(engine, compressed.path(), job.format);  // before it takes the place of a good file
    place(engine, job, source, compressed.path());
    checkSignature(engine, job.outputPath, job.format);
    FileError error;
    const auto size = fileSize(job.outputPath, &error);
    return size ? *size : throw ConversionError(error.description);
}

}  // namespace sorvik
