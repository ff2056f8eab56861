// What the controls write and show, by keys and mouse.

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QWheelEvent>

#include <cmath>

#include "preferences_fixture.h"

namespace sorvik {
namespace {

using Preferences = PreferencesTest;

TEST_F(Preferences, ShowWhatIsStoredAndWriteNothingByOpening) {
    store->inner.setValue(text("jpegCompressionQuality"), 0);
    store->inner.setValue(text("tiffCompressionQuality"), 83.4);
    store->inner.setValue(text("pdfCompressionQuality"), 1e300);
    store->inner.setValue(text("outputPrefix"), text("a/b"));
    store->inner.setValue(text("defaultOutputFormat_png"), text("WEBP"));
    for (const Tab tab : {general, files, output}) {
        open(tab);
    }
    EXPECT_EQ(shownValue("jpegQualitySlider"), text("0%"));
    EXPECT_EQ(shownValue("tiffQualitySlider"), text("83%"));
    EXPECT_EQ(find<QSlider>("tiffQualitySlider").value(), 83);
    EXPECT_EQ(shownValue("gifCompressionSlider"), text("7"));
    view->close();
    QTest::qWait(700);  // longer than settings are held back
    EXPECT_EQ(store->changes, 0);
    EXPECT_EQ(settings->tiffCompressionQuality.value(), 83.4);
}

TEST_F(Preferences, SlidersGoFromStepToStepByKeys) {
    struct Row {
        const char* slider;
        QProperty<double> AppSettings::*setting;
        double from;
        Qt::Key key;
        double to;
    };
    open(files);
    for (const Row& row : {
             Row{"jpegQualitySlider", &AppSettings::jpegCompressionQuality, 85, Qt::Key_Right, 90},
             Row{"jpegQualitySlider", &AppSettings::jpegCompressionQuality, 83.4, Qt::Key_Right, 85},
             Row{"jpegQualitySlider", &AppSettings::jpegCompressionQuality, 83.4, Qt::Key_Left, 80},
             Row{"avifQualitySlider", &AppSettings::avifCompressionQuality, 50, Qt::Key_PageUp, 55},
             Row{"pdfQualitySlider", &AppSettings::pdfCompressionQuality, 50, Qt::Key_PageDown, 45},
             Row{"webpQualitySlider", &AppSettings::webpCompressionQuality, 0, Qt::Key_Home, 10},
             Row{"webpQualitySlider", &AppSettings::webpCompressionQuality, -1e300, Qt::Key_Right, 10},
             Row{"tiffQualitySlider", &AppSettings::tiffCompressionQuality, 100, Qt::Key_Right, 100},
             Row{"pngCompressionSlider", &AppSettings::pngCompressionLevel, 9, Qt::Key_Left, 8},
             Row{"gifCompressionSlider", &AppSettings::gifCompressionLevel, 7, Qt::Key_End, 9},
         }) {
        (*settings).*row.setting = row.from;
        QTest::keyClick(&focused<QSlider>(row.slider), row.key);
        EXPECT_EQ(((*settings).*row.setting).value(), row.to) << row.slider << " from " << row.from;
        EXPECT_EQ(find<QSlider>(row.slider).value(), row.to);
    }
}

TEST_F(Preferences, SlidersLandOnStepsByMouse) {
    open(files);
    auto& slider = focused<QSlider>("jpegQualitySlider");
    const int y = slider.height() / 2;
    QTest::mouseClick(&slider, Qt::LeftButton, {}, {slider.width() / 2 + 3, y});
    EXPECT_EQ(settings->jpegCompressionQuality.value(), 55);
    QTest::mousePress(&slider, Qt::LeftButton, {}, {slider.width() / 2, y});
    for (int x = slider.width() / 2; x > slider.width() / 4; x -= 3) {
        QTest::mouseMove(&slider, {x, y});
        EXPECT_EQ(std::fmod(settings->jpegCompressionQuality, 5), 0);
    }
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, {slider.width() / 4, y});
    EXPECT_NEAR(settings->jpegCompressionQuality, 32.5, 5);

    const double before = settings->jpegCompressionQuality;
    const QPointF middle(slider.rect().center());
    QWheelEvent turn(middle, slider.mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&slider, &turn);
    EXPECT_EQ(settings->jpegCompressionQuality.value(), before);
}

TEST_F(Preferences, ClearSettingsSetsTheSlidersBackAtOnce) {
    open(files);
    settings->jpegCompressionQuality = 10;
    settings->pngCompressionLevel = 1;
    settings->gifCompressionLevel = 2;
    settings->heicCompressionQuality = 40;
    settings->pdfCompressionQuality = 33;
    EXPECT_EQ(shownValue("pdfQualitySlider"), text("33%"));
    QTest::mouseClick(&find<QPushButton>("clearSettingsButton"), Qt::LeftButton);
    EXPECT_EQ(shownValue("jpegQualitySlider"), text("85%"));
    EXPECT_EQ(shownValue("pngCompressionSlider"), text("9"));
    EXPECT_EQ(shownValue("gifCompressionSlider"), text("7"));
    EXPECT_EQ(find<QSlider>("pdfQualitySlider").value(), 85);
    EXPECT_EQ(settings->heicCompressionQuality.value(), 85);
}

TEST_F(Preferences, SwitchesAndAppearanceFollowAndLead) {
    open(files);
    for (const auto& [name, setting] : {
             std::pair("removeMetadataCheckBox", &AppSettings::removeMetadata),
             {"convertCompressionCheckBox", &AppSettings::convertCompressionEnabled},
             {"autoCompressionCheckBox", &AppSettings::autoCompressionEnabled},
         }) {
        QTest::keyClick(&focused<QCheckBox>(name), Qt::Key_Space);
        EXPECT_TRUE(((*settings).*setting).value()) << name;
        (*settings).*setting = false;
        EXPECT_FALSE(find<QCheckBox>(name).isChecked()) << name;
    }
    open(general);
    auto& picker = focused<QComboBox>("appearancePicker");
    QTest::keyClicks(&picker, text("D"));
    EXPECT_EQ(settings->appearanceMode.value(), AppearanceMode::dark);
    settings->appearanceMode = AppearanceMode::light;
    EXPECT_EQ(picker.currentText(), text("Light"));
}

TEST_F(Preferences, NamesTakeAnythingAndTellOfFolders) {
    open(output);
    for (const auto& [name, setting] : {
             std::pair("outputPrefixField", &AppSettings::outputPrefix),
             {"outputSuffixField", &AppSettings::outputSuffix},
             {"compressionPrefixField", &AppSettings::compressionPrefix},
             {"compressionSuffixField", &AppSettings::compressionSuffix},
         }) {
        auto& field = focused<QLineEdit>(name);
        QTest::keyClicks(&field, text(" a."));
        EXPECT_EQ(((*settings).*setting).value(), text(" a.")) << name;
        EXPECT_FALSE(find<QLabel>("slashHint").isVisible());
        field.setCursorPosition(1);
        QTest::keyClicks(&field, text("/b"));
        EXPECT_EQ(((*settings).*setting).value(), text(" /ba.")) << name;
        EXPECT_TRUE(find<QLabel>("slashHint").isVisible());
        (*settings).*setting = text("new");
        EXPECT_EQ(field.text(), text("new"));
    }
}

TEST_F(Preferences, AreWorkedByKeysAlone) {
    for (const Tab tab : {general, files, output}) {
        open(tab);
        QSet<QWidget*> missed;
        for (QWidget* each : find<QTabWidget>("preferencesTabs").currentWidget()->findChildren<QWidget*>()) {
            if (each->isVisible() && (each->focusPolicy() & Qt::TabFocus) != 0) {
                missed.insert(each);
            }
        }
        EXPECT_FALSE(missed.isEmpty());
        for (int presses = 0; presses < 40; ++presses) {
            missed.remove(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        EXPECT_TRUE(missed.isEmpty()) << tab;
    }
    QTest::keyClick(&focused<QLineEdit>("outputPrefixField"), Qt::Key_Escape);
    EXPECT_FALSE(view->isVisible());
    open(files);
    QTest::keyClick(&focused<QSlider>("jpegQualitySlider"), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(view->isVisible());
}

}  // namespace
}  // namespace sorvik
