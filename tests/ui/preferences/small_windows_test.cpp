// The about window, the question about updates and the menu item.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include "platform/log.h"
#include "ui/about_window.h"
#include "ui/check_for_updates_action.h"
#include "ui/update_prompt.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

/// Stands in for the desktop's browser.
class Browser : public QObject {
    Q_OBJECT

public:
    Browser() { QDesktopServices::setUrlHandler(text("https"), this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(text("https")); }
    QList<QUrl> opened;

public slots:
    void open(const QUrl& url) { opened += url; }
};

TEST(AboutWindow, IsOneForTheRunAndOpensItsLinksByKeys) {
    Browser browser;
    AboutWindowController about({}, {text("Maker & <Sons>"), QUrl(text("https://maker.example/?a=1&b=2")),
                                     QUrl(text("https://product.example"))});
    about.show();
    QWidget* window = about.window();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_EQ(window->size(), QSize(300, 260));
    EXPECT_EQ(window->windowTitle(), text("About Sorvik"));
    EXPECT_EQ(window->findChild<QLabel*>(text("versionText"))->text(), text("Version 1.0.0"));
    for (int link = 0; link < 2; ++link) {
        QTest::keyClick(window->findChild<QLabel*>(text("creditText")), Qt::Key_Tab);
        QTest::keyClick(window->findChild<QLabel*>(text("creditText")), Qt::Key_Return);
    }
    EXPECT_EQ(browser.opened,
              QList({QUrl(text("https://maker.example/?a=1&b=2")), QUrl(text("https://product.example"))}));
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    about.show();
    EXPECT_EQ(about.window(), window);
    EXPECT_TRUE(window->isVisible());
}

TEST(AboutWindow, LeavesOutWhatIsNotConfigured) {
    const AboutView about(text("2.3"), {});
    EXPECT_EQ(about.findChild<QLabel*>(text("versionText"))->text(), text("Version 2.3"));
    EXPECT_EQ(about.findChild<QLabel*>(text("creditText"))->text(),
              text("For any inquiries, feedback, or assistance, please go to Sorvik's website."));
}

class UpdatePrompt : public testing::Test {
protected:
    UpdatePrompt() {
        main.show();
        askForAutomaticUpdates(main, [this](bool automatically) { answers.push_back(automatically); });
        box = main.findChild<QMessageBox*>(text("updatePrompt"));
    }

    QWidget main;
    QPointer<QMessageBox> box;
    std::vector<bool> answers;
};

TEST_F(UpdatePrompt, TellsTheAnswerOnce) {
    ASSERT_TRUE(box->isVisible());
    EXPECT_EQ(box->windowModality(), Qt::WindowModal);
    EXPECT_EQ(box->buttons().size(), 2);
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_TRUE(box->isVisible());
    QTest::mouseClick(box->findChild<QPushButton*>(text("dontCheckButton")), Qt::LeftButton);
    EXPECT_EQ(answers, std::vector{false});
    EXPECT_TRUE(QTest::qWaitFor([this] { return box.isNull(); }));
    EXPECT_EQ(answers, std::vector{false});
}

TEST_F(UpdatePrompt, TakesReturnForYes) {
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(answers, std::vector{true});
}

TEST_F(UpdatePrompt, StaysWithoutAnAnswerWhenItIsClosed) {
    QApplication::closeAllWindows();  // as at the program's end, which it must not hold up
    EXPECT_FALSE(main.isVisible());
    EXPECT_TRUE(QTest::qWaitFor([this] { return box.isNull(); }));
    EXPECT_TRUE(answers.empty());
}

TEST_F(UpdatePrompt, LetsTheProgramBeQuit) {
    box->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(box));
    QTest::keyClick(box, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(main.isVisible());
    EXPECT_TRUE(answers.empty());
}

TEST(CheckForUpdates, CanBeChosenWhileACheckCanStart) {
    QStringList lines;
    setLogSink([&lines](const QString& line) { lines += line; });
    QMenu menu;
    QProperty<bool> canCheck(false);
    int checks = 0;
    const auto* action = new CheckForUpdatesAction(menu, canCheck, [&checks] { ++checks; });
    menu.popup({});
    EXPECT_FALSE(action->isEnabled());
    canCheck = true;
    EXPECT_TRUE(action->isEnabled());
    QTest::keyClick(&menu, Qt::Key_Down);
    QTest::keyClick(&menu, Qt::Key_Return);
    setLogSink([](const QString&) {});
    EXPECT_EQ(checks, 1);
    EXPECT_EQ(action->text(), text("Check for Updates…"));
    EXPECT_EQ(lines,
              QStringList({text("📊 Menu button appeared - canCheckForUpdates: false"),
                           text("🔄 Manual update check triggered from menu"), text("📊 canCheckForUpdates: true")}));
}

}  // namespace
}  // namespace sorvik

#include "small_windows_test.moc"
