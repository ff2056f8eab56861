// The settings, and the names that follow from them.

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QSignalSpy>
#include <QTest>

#include "core/app_settings.h"
#include "core/compression_values.h"
#include "core/output_naming.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

/// Counts the writes to each key.
class CountingStore final : public DefaultsStore {
public:
    [[nodiscard]] bool contains(const QString& key) const override { return inner_.contains(key); }
    [[nodiscard]] QVariant value(const QString& key) const override { return inner_.value(key); }
    void setValue(const QString& key, const QVariant& value) override {
        const QMutexLocker locker(&lock_);
        ++writes_[key];
        inner_.setValue(key, value);
    }
    void remove(const QString& key) override { inner_.remove(key); }
    [[nodiscard]] int writes(const char* key) const {
        const QMutexLocker locker(&lock_);
        return writes_.value(QString::fromUtf8(key));
    }

private:
    MemoryDefaultsStore inner_;
    mutable QMutex lock_;
    QMap<QString, int> writes_;
};

TEST(AppSettings, StartWithTheirDefaultsAndWriteNothing) {
    const auto store = std::make_shared<CountingStore>();
    const AppSettings settings(store);
    EXPECT_EQ(settings.jpegQuality.value(), 0.8);
    EXPECT_EQ(settings.pngQuality.value(), 0.7);
    EXPECT_EQ(settings.gifQuality.value(), 0.6);
    EXPECT_EQ(settings.pngCompressionLevel.value(), 9);
    EXPECT_EQ(settings.gifCompressionLevel.value(), 7);
    EXPECT_EQ(settings.avifCompressionQuality.value(), 85);
    EXPECT_FALSE(settings.removeMetadata.value());
    EXPECT_EQ(settings.processingMode.value(), ProcessingMode::convert);
    QTest::qWait(600);
    EXPECT_EQ(store->writes("jpegQuality"), 0);
}

TEST(AppSettings, ReadWhatIsStored) {
    const auto store = std::make_shared<MemoryDefaultsStore>();
    store->setValue(text("jpegCompressionQuality"), 0);
    store->setValue(text("jpegQuality"), 0);
    store->setValue(text("processingMode"), text("foo"));
    store->setValue(text("appearanceMode"), text("dark"));
    store->setValue(text("SUEnableAutomaticChecks"), text("true"));
    const AppSettings settings(store);
    EXPECT_EQ(settings.jpegCompressionQuality.value(), 0) << "a stored 0 of a recipe stays";
    EXPECT_EQ(settings.jpegQuality.value(), 0.8) << "a stored 0 of an older quality does not";
    EXPECT_EQ(settings.processingMode.value(), ProcessingMode::convert);
    EXPECT_EQ(store->text(text("processingMode")), text("foo"));
    EXPECT_TRUE(settings.isDark());
    EXPECT_TRUE(settings.automaticUpdateCheck.value());
}

TEST(AppSettings, WriteOnceAfterABurstAndAtOnceWhereTold) {
    const auto store = std::make_shared<CountingStore>();
    {
        AppSettings settings(store);
        for (const char* typed : {"n", "ne", "new", "new-"}) {
            settings.outputPrefix = text(typed);
            QTest::qWait(20);
        }
        EXPECT_EQ(store->writes("outputPrefix"), 0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return store->writes("outputPrefix") > 0; }, 3000));
        EXPECT_EQ(store->text(text("outputPrefix")), text("new-"));
        EXPECT_EQ(store->writes("outputPrefix"), 1);

        settings.processingMode = ProcessingMode::compress;
        EXPECT_EQ(store->text(text("processingMode")), text("compress"));
        settings.automaticUpdateCheck = true;
        EXPECT_EQ(store->number(text("SUScheduledCheckInterval")), 86400);
        settings.outputSuffix = text("late");
    }
    QTest::qWait(700);
    EXPECT_EQ(store->writes("outputSuffix"), 0) << "nothing is written for an object that is gone";
}

TEST(AppSettings, ApplyTheAppearanceAndFollowTheSystem) {
    AppSettings settings(std::make_shared<MemoryDefaultsStore>());
    QSignalSpy applied(&settings, &AppSettings::appearanceApplied);
    bool systemDark = true;
    settings.setSystemDarkSource([&] { return systemDark; });
    EXPECT_TRUE(settings.isDark());
    settings.appearanceMode = AppearanceMode::light;
    EXPECT_FALSE(settings.isDark());
    const auto count = applied.count();
    settings.systemAppearanceChanged();
    EXPECT_EQ(applied.count(), count) << "a fixed appearance does not follow";
    settings.appearanceMode = AppearanceMode::system;
    systemDark = false;
    settings.systemAppearanceChanged();
    EXPECT_FALSE(settings.isDark());
}

TEST(OutputNaming, NestsTheAffixes) {
    const NameAffixes affixes{text("o-"), text("-p"), text("c-"), text("-q")};
    const auto name = [&](ImageFormat format, bool conversion, bool compression) {
        return composeOutputName(text("/d.x/photo.final.png"), format, conversion, compression, affixes);
    };
    EXPECT_EQ(name(ImageFormat::jpeg, true, true), text("/d.x/o-c-photo.final-q-p.jpg"));
    EXPECT_EQ(name(ImageFormat::jpeg, true, false), text("/d.x/o-photo.final-p.jpg"));
    EXPECT_EQ(name(ImageFormat::png, false, true), text("/d.x/c-photo.final-q.png"));
    EXPECT_EQ(name(ImageFormat::png, false, false), text("/d.x/photo.final.png"));
    EXPECT_EQ(composeOutputName(text("/d/scan"), ImageFormat::jpeg, true, false, {}), text("/d/scan.jpg"));
}

TEST(OutputNaming, FollowsTheSettings) {
    AppSettings settings(std::make_shared<MemoryDefaultsStore>());
    settings.outputPrefix = text("o-");
    settings.compressionPrefix = text("c-");
    const auto name = [&](ImageFormat format, bool imageMagick) {
        return outputPath(text("/d/a.png"), format, &settings, imageMagick);
    };
    EXPECT_EQ(name(ImageFormat::jpeg, true), text("/d/o-a.jpg"));
    settings.convertCompressionEnabled = true;
    EXPECT_EQ(name(ImageFormat::jpeg, true), text("/d/o-c-a.jpg"));
    EXPECT_EQ(name(ImageFormat::jpeg, false), text("/d/o-a.jpg")) << "no tool, no compression in the name";
    EXPECT_EQ(name(ImageFormat::bmp, true), text("/d/o-a.bmp"));
    settings.processingMode = ProcessingMode::compress;
    settings.convertCompressionEnabled = false;
    EXPECT_EQ(name(ImageFormat::png, true), text("/d/c-a.png"));
    EXPECT_EQ(outputPath(text("/d/a.png"), ImageFormat::jpeg, nullptr, true), text("/d/a.jpg"));
}

TEST(CompressionValue, IsTheRecipesOwnScale) {
    AppSettings settings(std::make_shared<MemoryDefaultsStore>());
    settings.pngCompressionLevel = 12.9;
    settings.gifCompressionLevel = 3.9;
    settings.webpCompressionQuality = 61.5;
    EXPECT_EQ(compressionValue(ImageFormat::png, &settings), 9);
    EXPECT_EQ(compressionValue(ImageFormat::gif, &settings), 3);
    EXPECT_EQ(compressionValue(ImageFormat::webp, &settings), 61.5);
    EXPECT_EQ(compressionValue(ImageFormat::heic, nullptr), 85);
    EXPECT_EQ(compressionValue(ImageFormat::gif, nullptr), 7);
    settings.resetCompressionDefaults();
    EXPECT_EQ(compressionValue(ImageFormat::webp, &settings), 85);
}

}  // namespace
}  // namespace sorvik
