#include "core/finish_conversion.h"

#include "core/compressed_temp_file.h"
#include "platform/log.h"

namespace sorvik {
namespace {

void throwIf(const std::optional<FileError>& error) {
    if (error) {
        throw ConversionError(error->description);
    }
}

std::int64_t sizeOrThrow(const QString& path) {
    FileError error;
    const auto size = fileSize(path, &error);
    return size ? *size : throw ConversionError(error.description);
}

void checkFile(BatchEngine& engine, const QString& path, ImageFormat format) {
    if (!engine.isValidImageFile(path, format)) {
        throw ConversionError();
    }
}

/// Runs the recipe on the written output. True when the output is now the compressed file; a recipe
/// without a result leaves the output as it is.
bool compressInPlace(BatchEngine& engine, const FinishJob& job, double value) {
    const CompressedTempFile compressed(job.format);
    try {
        engine.compress(job.format, job.outputPath, compressed.path(), value, CompressedFor::itself);
    } catch (const ConversionError& error) {
        logLine(QStringLiteral("Compression left out for %1: %2").arg(job.outputPath, error.description()));
        return false;
    }
    checkFile(engine, compressed.path(), job.format);  // before it takes the place of a good file
    throwIf(moveFile(compressed.path(), job.outputPath));
    checkFile(engine, job.outputPath, job.format);
    return true;
}

}  // namespace

FinishedFile finishFile(BatchEngine& engine, const FinishJob& job) {
    if (fileIdentity(job.sourcePath) != job.source) {
        throw ConversionError(Refusal::changedMeanwhile);
    }
    if (!engine.hasSignature(job.bytes, job.format)) {
        throw ConversionError();  // what stands at the output is worth more
    }
    throwIf(writeAtomically(job.outputPath, job.bytes));
    FinishedFile finished;
    if (job.compression) {
        finished.convertedSize = sizeOrThrow(job.outputPath);
        finished.wasCompressed = compressInPlace(engine, job, *job.compression);
    } else {
        checkFile(engine, job.outputPath, job.format);
        finished.convertedSize = sizeOrThrow(job.outputPath);
    }
    finished.outputSize = fileSize(job.outputPath);
    return finished;
}

}  // namespace sorvik
