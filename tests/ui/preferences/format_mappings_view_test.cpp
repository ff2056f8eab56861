// The list of default targets, by keys and mouse.

#include <QComboBox>
#include <QToolButton>

#include "core/format_mapping_reader.h"
#include "preferences_fixture.h"

namespace sorvik {
namespace {

class FormatMappingsView : public PreferencesTest {
protected:
    QComboBox& picker(const char* name, int row) { return *view->findChildren<QComboBox*>(text(name)).at(row); }
    QToolButton& removeButton(int row) { return *removeButtons().at(row); }
    QList<QToolButton*> removeButtons() { return view->findChildren<QToolButton*>(text("removeMappingButton")); }

    void click(QWidget& button) {
        QTest::mouseClick(&button, Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QStringList offers(const char* name, int row) {
        QStringList texts;
        for (int i = 0; i < picker(name, row).count(); ++i) {
            texts += picker(name, row).itemText(i);
        }
        return texts;
    }

    QString header() { return find<QLabel>("mappingsHeader").text(); }
    bool saysThatThereAreNone() { return find<QLabel>("noMappingsText").isVisible(); }
};

TEST_F(FormatMappingsView, CountsAddsUntilAllAreMappedAndRemovesToTheLast) {
    open(output);
    EXPECT_EQ(header(), text("0 outputs configured"));
    EXPECT_TRUE(saysThatThereAreNone());
    auto& add = find<QToolButton>("addMappingButton");
    EXPECT_EQ(add.toolTip(), text("Add format mapping"));
    click(add);
    EXPECT_EQ(header(), text("1 output configured"));
    EXPECT_FALSE(saysThatThereAreNone());
    EXPECT_EQ(store->text(text("defaultOutputFormat_bmp")), text("JPEG"));
    click(add);
    EXPECT_EQ(header(), text("2 outputs configured"));
    for (int i = 0; i < 14; ++i) {
        click(add);
    }
    EXPECT_EQ(header(), text("15 outputs configured"));
    EXPECT_FALSE(add.isEnabled());
    EXPECT_EQ(add.toolTip(), text("All input formats are already mapped"));

    removeButton(14).setFocus(Qt::TabFocusReason);
    for (int left = 14; left > 0; --left) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        ASSERT_EQ(removeButtons().size(), left);
    }
    EXPECT_EQ(header(), text("1 output configured"));
    click(removeButton(0));
    EXPECT_TRUE(saysThatThereAreNone());
    EXPECT_TRUE(add.isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), &add);
    EXPECT_TRUE(FormatMappingReader(*store).allMappings().empty());
}

TEST_F(FormatMappingsView, PickersOfferWhatIsFreeAndStoreWhatIsChosen) {
    store->inner.setValue(text("defaultOutputFormat_jpg"), text("WEBP"));
    store->inner.setValue(text("defaultOutputFormat_png"), text("GIF"));
    open(output);
    EXPECT_EQ(picker("inputFormatPicker", 0).currentText(), text("JPEG"));
    EXPECT_EQ(offers("outputFormatPicker", 0), QStringList({text("PNG"), text("WEBP"), text("TIFF"), text("BMP"),
                                                            text("HEIC"), text("AVIF"), text("PDF")}));
    EXPECT_EQ(offers("inputFormatPicker", 0).size(), 14);
    EXPECT_FALSE(offers("inputFormatPicker", 0).contains(text("PNG")));

    auto& input = picker("inputFormatPicker", 0);
    input.setFocus(Qt::TabFocusReason);
    QTest::keyClicks(&input, text("A"));  // AVIF, which offers WEBP too
    EXPECT_EQ(input.currentText(), text("AVIF"));
    EXPECT_FALSE(store->contains(text("defaultOutputFormat_jpg")));
    EXPECT_FALSE(store->contains(text("defaultOutputFormat_JPEG")));
    EXPECT_EQ(store->text(text("defaultOutputFormat_avif")), text("WEBP"));
    EXPECT_TRUE(offers("inputFormatPicker", 1).contains(text("JPEG")));
    EXPECT_FALSE(offers("inputFormatPicker", 1).contains(text("AVIF")));

    auto& target = picker("outputFormatPicker", 0);
    QTest::keyClick(&target, Qt::Key_Down);
    EXPECT_EQ(store->text(text("defaultOutputFormat_avif")), text("TIFF"));
}

TEST_F(FormatMappingsView, ReadsTheStoreWheneverItAppears) {
    open(output);
    open(files);
    store->inner.setValue(text("defaultOutputFormat_tiff"), text("PDF"));
    open(output);
    EXPECT_EQ(header(), text("1 output configured"));
    EXPECT_EQ(picker("outputFormatPicker", 0).currentText(), text("PDF"));
}

}  // namespace
}  // namespace sorvik
