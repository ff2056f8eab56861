#pragma once

#include <QByteArray>
#include <QString>

#include "core/vocabulary/formats.h"
#include "engines/image_converter.h"
#include "engines/picture_compression.h"

namespace sorvik {

/// What the batches need of the engines. All operations run on pool threads, many at a time, and block; the
/// conversions throw what ImageConverter throws.
class BatchEngine {
public:
    virtual ~BatchEngine() = default;

    [[nodiscard]] virtual bool hasImageMagick() = 0;

    // Conversions: from the source's path to the output's bytes; quality 0.0 to 1.0.
    virtual QByteArray convertFile(const QString& path, ImageFormat format, bool stripMetadata, double quality) = 0;
    virtual QByteArray convertEPS(const QString& path, ImageFormat format, bool stripMetadata, double quality) = 0;
    virtual QByteArray convertAI(const QString& path, ImageFormat format, double quality) = 0;

    /// The compression recipe of a format, from one file to another, never to itself; the value is on the recipe's
    /// own scale (0 to 100, or a level). The result was opened again and shows the same picture. Throws
    /// ConversionError when there is none.
    virtual void compress(ImageFormat format, const QString& inputPath, const QString& outputPath, double value,
                          CompressedFor purpose) = 0;

    /// Puts new content in the place of a file, which stands behind a backup meanwhile. Throws ConversionError.
    virtual void replaceFile(const QString& originalPath, const QString& newContentPath) = 0;

    /// Whether bytes begin as their format does.
    virtual bool hasSignature(const QByteArray& bytes, ImageFormat format) = 0;

    /// Whether a produced file begins as its format does.
    virtual bool isValidImageFile(const QString& path, ImageFormat format) = 0;

    virtual void clearResultCache() = 0;
    virtual void clearSignatureCache() = 0;
};

/// The real engines.
class SystemBatchEngine final : public BatchEngine {
public:
    [[nodiscard]] bool hasImageMagick() override;
    QByteArray convertFile(const QString& path, ImageFormat format, bool stripMetadata, double quality) override;
    QByteArray convertEPS(const QString& path, ImageFormat format, bool stripMetadata, double quality) override;
    QByteArray convertAI(const QString& path, ImageFormat format, double quality) override;
    void compress(ImageFormat format, const QString& inputPath, const QString& outputPath, double value,
                  CompressedFor purpose) override;
    void replaceFile(const QString& originalPath, const QString& newContentPath) override;
    bool hasSignature(const QByteArray& bytes, ImageFormat format) override;
    bool isValidImageFile(const QString& path, ImageFormat format) override;
    void clearResultCache() override;
    void clearSignatureCache() override;

private:
    ImageConverter converter_;
};

}  // namespace sorvik
