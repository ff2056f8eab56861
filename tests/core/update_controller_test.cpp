// The tie between updater and settings, and the question of the first start.

#include <gtest/gtest.h>

#include <memory>

#include "core/app_settings.h"
#include "core/update_controller.h"
#include "platform/log.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

class UpdateControllerTest : public testing::Test {
protected:
    UpdateControllerTest() {
        setLogSink([this](const QString& line) { printed << line; });
    }
    ~UpdateControllerTest() override { setLogSink({}); }

    QStringList printed;
    std::shared_ptr<DefaultsStore> store = std::make_shared<MemoryDefaultsStore>();
    std::unique_ptr<AppSettings> settings = std::make_unique<AppSettings>(store);
    Updater first{{}, store};
};

TEST_F(UpdateControllerTest, KeepsItsUpdaterAsTheSettingsSay) {
    settings->automaticUpdateCheck = true;
    first.updateCheckInterval = 1;
    UpdateController controller(&first, settings.get());
    EXPECT_EQ(printed, QStringList{text("🚀 UpdateController initialized")});
    EXPECT_TRUE(first.automaticallyChecksForUpdates);
    EXPECT_EQ(first.updateCheckInterval, 86400.0);

    auto real = std::make_unique<Updater>(Updater::Configuration{}, store);
    real->start(&controller);
    controller.setUpdater(real.get());
    EXPECT_TRUE(real->automaticallyChecksForUpdates);
    settings->automaticUpdateCheck = false;
    EXPECT_FALSE(real->automaticallyChecksForUpdates) << "later changes are followed";
    EXPECT_TRUE(first.automaticallyChecksForUpdates) << "by the one that counts alone";

    controller.updaterDidNotFindUpdate(text("no server"));
    EXPECT_EQ(printed.last(), text("❌ Update check error: no server"));
    real.reset();
    settings->automaticUpdateCheck = true;
    settings.reset();
    EXPECT_TRUE(controller.updaterShouldPromptForPermissionToCheckForUpdates());
    EXPECT_FALSE(controller.shouldShowPrompt());
    controller.answerPrompt(true);
}

TEST_F(UpdateControllerTest, AsksOnceWhateverTheAnswer) {
    for (const bool automatic : {true, false}) {
        store = std::make_shared<MemoryDefaultsStore>();
        settings = std::make_unique<AppSettings>(store);
        UpdateController controller(&first, settings.get());
        printed.clear();
        EXPECT_TRUE(controller.shouldShowPrompt());
        EXPECT_TRUE(controller.updaterShouldPromptForPermissionToCheckForUpdates());
        controller.answerPrompt(automatic);
        EXPECT_EQ(first.automaticallyChecksForUpdates.value(), automatic);
        EXPECT_EQ(store->value(text("SUEnableAutomaticChecks")), automatic);
        EXPECT_EQ(store->value(text("SUScheduledCheckInterval")), 86400);

        AppSettings secondLaunch(store);
        UpdateController again(&first, &secondLaunch);
        EXPECT_FALSE(again.shouldShowPrompt());
        EXPECT_FALSE(again.updaterShouldPromptForPermissionToCheckForUpdates());
        const QString answer = text(automatic ? "Check Automatically" : "Don't Check");
        EXPECT_EQ(printed,
                  (QStringList{text("🔍 Update dialog status: hasShown = false"), text("🎯 Showing update prompt..."),
                               text("✅ User selected: ") + answer, text("🚀 UpdateController initialized"),
                               text("🔍 Update dialog status: hasShown = true"),
                               text("✅ Update dialog already shown, skipping")}));
    }
}

}  // namespace
}  // namespace sorvik
