// The program put together: its windows, its menus, what it asks and what it remembers.

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <algorithm>

#include "apps/sorvik/sorvik_app.h"
#include "platform/defaults_store.h"

namespace sorvik {
namespace {

constexpr int patience = 60000;       // milliseconds; only a hang takes that long
constexpr int longerThanDelay = 900;  // milliseconds; the question comes after 500

class SorvikAppTest : public testing::Test {
protected:
    /// A start of the program over the store that all starts of a test share.
    std::unique_ptr<SorvikApp> start() {
        auto app = std::make_unique<SorvikApp>(store, updates);
        EXPECT_TRUE(seen().isEmpty()) << "a window before the services stand";
        app->show({});
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&app->window()));
        return app;
    }

    static QMessageBox* question(SorvikApp& app) {
        return app.window().findChild<QMessageBox*>(QStringLiteral("updatePrompt"));
    }

    static QWidgetList seen() {
        QWidgetList windows;
        std::ranges::copy_if(QApplication::topLevelWidgets(), std::back_inserter(windows), &QWidget::isVisible);
        return windows;
    }

    static QStringList seenTitles() {
        QStringList titles;
        for (const QWidget* window : seen()) {
            titles << window->windowTitle();
        }
        titles.sort();
        return titles;
    }

    Updater::Configuration updates{.feed = QUrl(QStringLiteral("https://127.0.0.1:9/feed.json"))};
    std::shared_ptr<MemoryDefaultsStore> store = std::make_shared<MemoryDefaultsStore>();
};

TEST_F(SorvikAppTest, AsksAboutUpdatesUntilItHasAnAnswer) {
    auto app = start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return question(*app) != nullptr; }, patience));
    QTest::keyClick(question(*app), Qt::Key_Escape);
    ASSERT_NE(question(*app), nullptr);
    app->close();
    app.reset();

    app = start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return question(*app) != nullptr; }, patience));
    QTest::keyClick(question(*app), Qt::Key_Return);
    EXPECT_TRUE(app->settings().automaticUpdateCheck.value());
    app->close();
    app.reset();

    app = start();
    EXPECT_TRUE(app->settings().automaticUpdateCheck.value());
    QTest::qWait(longerThanDelay);
    EXPECT_EQ(question(*app), nullptr);
}

TEST_F(SorvikAppTest, AsksAndOffersNothingWithoutAnAddressToAsk) {
    updates.feed.clear();
    const auto app = start();
    QTest::qWait(longerThanDelay);
    EXPECT_EQ(question(*app), nullptr);
    EXPECT_EQ(app->window().findChild<QAction*>(QStringLiteral("checkForUpdatesAction")), nullptr);
}

TEST_F(SorvikAppTest, ShowsWhatTheNetworkSaysAsPlainText) {
    store->setValue(QStringLiteral("hasShownUpdatePreferencesDialog"), true);
    const auto app = start();
    const QString notes = QStringLiteral("<h1>New</h1> <a href=\"file:///\">here</a>") + QString(900, u'\n');
    emit app->updater().updateFound(QStringLiteral("9.9"), QUrl(), notes, true);
    const auto* box = app->window().findChild<QMessageBox*>(QStringLiteral("updateMessage"));
    ASSERT_NE(box, nullptr);
    for (const QLabel* label : box->findChildren<QLabel*>()) {
        EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText) << label->text().toStdString();
    }
    EXPECT_LT(box->height(), 600);
    EXPECT_EQ(box->detailedText(), notes);
}

TEST_F(SorvikAppTest, OpensEachWindowOnce) {
    store->setValue(QStringLiteral("hasShownUpdatePreferencesDialog"), true);
    const auto app = start();
    RootView& window = app->window();
    for (int turn = 0; turn < 2; ++turn) {
        window.findChild<QAction*>(QStringLiteral("aboutAction"))->trigger();
        window.activateWindow();
        QTest::keyClick(&window, Qt::Key_Comma, Qt::ControlModifier);
        EXPECT_EQ(seenTitles(), QStringList({QStringLiteral("About Sorvik"), QStringLiteral("Preferences"),
                                             QStringLiteral("Sorvik")}));
    }
}

TEST_F(SorvikAppTest, LightAndDarkAreStoredAndChangeAllWindowsAtOnce) {
    store->setValue(QStringLiteral("hasShownUpdatePreferencesDialog"), true);
    auto app = start();
    app->window().findChild<QAction*>(QStringLiteral("preferencesAction"))->trigger();
    app->settings().appearanceMode = AppearanceMode::dark;
    QTest::qWait(1);
    for (const QWidget* window : seen()) {
        EXPECT_LT(window->palette().color(QPalette::Window).lightness(), 128);
    }
    QTest::qWait(longerThanDelay);  // settings are stored once they rest
    app->close();
    app.reset();

    app = start();
    EXPECT_LT(app->window().palette().color(QPalette::Window).lightness(), 128);
    app->settings().appearanceMode = AppearanceMode::light;
    QTest::qWait(1);
    EXPECT_GE(app->window().grab().toImage().pixelColor(4, 4).lightness(), 128);
}

}  // namespace
}  // namespace sorvik
