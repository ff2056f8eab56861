// The vectors of the imaging tool, and what it answers.

#include "imaging/imaging_client.h"

#include <gtest/gtest.h>

#include "imaging/picture_facts.h"

namespace sorvik::imaging {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

TEST(ImagingVectors, AreWhole) {
    const Picture picture{text("/i")};
    const QString out = text("/o");
    const auto same = [](const QStringList& vector, const char* line) { EXPECT_EQ(vector.join(u' '), text(line)); };
    same(pngArguments(picture, out, Metadata::kept), "-s format png /i --out /o");
    same(heicArguments(picture, out, Metadata::stripped),
         "-s format heic -s colorSpace sRGB -s stripMetadata yes /i --out /o");
    same(pdfArguments(picture, out, Metadata::stripped),
         "-s format pdf -s colorSpace sRGB -s stripMetadata yes /i --out /o");
    same(iconArguments(picture, out, {16, 48}, Metadata::kept), "-s format png -s iconSizes 16,48 /i --out /o");
    same(intermediateArguments(picture, out, Colors::sRGB, Metadata::kept),
         "-s format png -s purpose intermediate -s colorSpace sRGB /i --out /o");
    same(intermediateArguments(picture, out, Colors::asTheyAre, Metadata::stripped),
         "-s format png -s purpose intermediate -s colorSpace sRGB -s stripMetadata yes /i --out /o");
    same(keepLooksArguments(text("/a"), text("/b")), "--keep-looks /a /b");
    same(describeArguments(text("/a")), "--describe /a");
}

TEST(PictureFacts, OnlyTheToolsOwnLineIsTaken) {
    const auto facts =
        parsePictureFacts(text("kind=jpeg width=4000 height=3000 pages=1 orientation=6 alpha=no extras=no whole=yes"));
    EXPECT_EQ(facts, (PictureFacts{text("jpeg"), 4000, 3000, 1, 6, false, false, true}));
    for (const char* line : {
             "",
             "kind=jpeg width=4000 height=3000 pages=1 orientation=6 alpha=no extras=no whole=yes\n",
             "kind=jpeg width=4000 height=3000 pages=1 orientation=6 alpha=no extras=no whole=maybe",
             "kind=jpeg width=4000 height=3000 pages=1 orientation=9 alpha=no extras=no whole=yes",
             "kind=jpeg width=0 height=3000 pages=1 orientation=1 alpha=no extras=no whole=yes",
             "kind=jpeg width=99999999999 height=3000 pages=1 orientation=1 alpha=no extras=no whole=yes",
             "kind=bmp width=4000 height=3000 pages=1 orientation=1 alpha=no extras=no whole=yes",
             "kind=jpeg height=3000 width=4000 pages=1 orientation=1 alpha=no extras=no whole=yes",
             "kind=jpeg width=-4 height=3000 pages=1 orientation=1 alpha=no extras=no whole=yes",
             "warning kind=jpeg width=4 height=3000 pages=1 orientation=1 alpha=no extras=no whole=yes",
         }) {
        EXPECT_FALSE(parsePictureFacts(text(line))) << line;
    }
}

TEST(PictureFacts, AToolThatIsNotThereGivesNone) {
    const PictureDescription none = describePicture(ImagingClient(text("/nonexistent/sips")), text("/x"));
    EXPECT_EQ(none.status, codecs::SipsStatus::failed);
    EXPECT_FALSE(none.facts);
    EXPECT_NE(none.message, QString());
}

}  // namespace
}  // namespace sorvik::imaging
