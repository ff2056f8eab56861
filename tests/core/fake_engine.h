#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QThread>

#include <atomic>
#include <functional>
#include <map>
#include <mutex>

#include "core/batch_engine.h"
#include "core/vocabulary/path_names.h"
#include "engines/file_replacement.h"

namespace sorvik {

/// Engines for tests whose subject is the batch: counts what runs at once, and does per name what a test says.
class FakeEngine final : public BatchEngine {
public:
    /// Called in the pool for each conversion, with the source's name; may block or throw.
    std::function<void(const QString& name)> onConvert;

    /// The recipe: false, or its absence, means that there is no result.
    std::function<bool(const QString& input, const QString& output, double value)> onCompress;

    std::atomic<int> conversions = 0;
    std::atomic<int> replacements = 0;
    std::atomic<int> mostAtOnce = 0;
    std::atomic<int> resultCacheCleared = 0;
    std::atomic<int> signatureCacheCleared = 0;
    std::atomic<int> mostFinishingOnePath = 0;
    std::atomic<int> finishing = 0;
    bool imageMagick = true;

    [[nodiscard]] bool hasImageMagick() override { return imageMagick; }

    QByteArray convertFile(const QString& path, ImageFormat, bool, double quality) override {
        const int running = ++atOnce_;
        raise(mostAtOnce, running);
        const Leave leave{atOnce_};
        ++conversions;
        if (onConvert) {
            onConvert(fileName(path).toString());
        }
        return "converted " + QByteArray::number(quality) + ' ' + fileName(path).toUtf8();
    }
    QByteArray convertEPS(const QString&, ImageFormat, bool, double) override { return "from EPS"; }
    QByteArray convertAI(const QString&, ImageFormat, double) override { return "from AI"; }

    void compress(ImageFormat, const QString& input, const QString& output, double value, CompressedFor) override {
        if (!onCompress || !onCompress(input, output, value)) {
            throw ConversionError();
        }
    }

    void replaceFile(const QString& originalPath, const QString& newContentPath) override {
        ++replacements;
        EXPECT_TRUE(sorvik::replaceFile(originalPath, newContentPath));
    }

    bool hasSignature(const QByteArray& bytes, ImageFormat) override { return !bytes.endsWith("junk.jpg"); }

    bool isValidImageFile(const QString& path, ImageFormat) override {
        ++finishing;
        const int running = enter(path);
        raise(mostFinishingOnePath, running);
        QThread::msleep(2);
        const std::lock_guard guard(lock_);
        --finishingPaths_[path];
        return !path.contains(QStringLiteral("invalid"));
    }

    void clearResultCache() override { ++resultCacheCleared; }
    void clearSignatureCache() override { ++signatureCacheCleared; }

private:
    struct Leave {
        std::atomic<int>& count;
        ~Leave() { --count; }
    };

    int enter(const QString& path) {
        const std::lock_guard guard(lock_);
        return ++finishingPaths_[path];
    }

    static void raise(std::atomic<int>& most, int value) {
        int known = most;
        while (known < value && !most.compare_exchange_weak(known, value)) {
        }
    }

    std::atomic<int> atOnce_ = 0;
    std::mutex lock_;
    std::map<QString, int> finishingPaths_;
};

}  // namespace sorvik
