// From identify's text to what is shown.

#include <gtest/gtest.h>

#include "metadata/presentation.h"
#include "metadata/verbose_parser.h"

namespace sorvik {
namespace {

using Table = QMap<QString, QString>;

QString text(const char* literal) { return QString::fromUtf8(literal); }

struct Names {
    const char* given;
    const char* shown;
};

TEST(DisplayLabel, NamesKeysByTableFamilyOrAsTheyAre) {
    for (const Names& row : {
             Names{"exif:Make", "Camera Make"},
             Names{"EXIF:DATETIME", "Date Taken"},
             Names{"exif:DateTimeOriginal", "Date Taken"},
             Names{"exif:FocalLengthIn35mmFilm", "35mm Focal Length"},
             Names{"Profile-icc", "ICC Color Profile"},
             Names{"exif:MakerNote", "EXIF Makernote"},
             Names{"exif:GPSVersionID", "EXIF Gpsversionid"},
             Names{"dng:create.date", "DNG Create Date"},
             Names{"dng:camera.model.name", "DNG Camera Model Name"},
             Names{"dng:model", "DNG Model"},
             Names{"icc:model", "Profile Model"},
             Names{"icc:model-2nd part", "ICC Model-2Nd Part"},
             Names{"png:IHDR.bit_depth", "PNG Ihdr.Bit_Depth"},
             Names{"jpeg:quality", "JPEG Quality"},
             Names{"tiff:ärger", "TIFF Ärger"},
             Names{"xmp:Rating", "xmp:Rating"},
             Names{"iptc:City[2,90]", "iptc:City[2,90]"},
             Names{"exif:", "EXIF "},
         }) {
        EXPECT_EQ(displayLabel(text(row.given)), text(row.shown)) << row.given;
    }
}

TEST(FormatValue, AddsUnitsAndMeaningsByTheWholeValue) {
    struct Row {
        const char* key;
        const char* value;
        const char* shown;
    };
    for (const Row& row : {
             Row{"exif:ExposureTime", "1/125", "1/125s"},
             Row{"exif:FNumber", "28/10", "f/28/10"},
             Row{"EXIF:FNUMBER", "5.6", "f/5.6"},
             Row{"exif:FocalLength", "24/1", "24/1mm"},
             Row{"exif:FocalLengthIn35mmFilm", "35", "35mm"},
             Row{"exif:Flash", "24", "No Flash, Auto"},
             Row{"exif:Flash", "95", "Flash Fired, Auto, Red-eye Reduction, Return Detected"},
             Row{"exif:Flash", "2", "2"},
             Row{"exif:Orientation", "0", "0"},
             Row{"exif:Orientation", "7", "Mirror Horizontal + Rotate 90°"},
             Row{"exif:MeteringMode", "255", "Other"},
             Row{"exif:ExposureProgram", "9", "Bulb"},
             Row{"exif:WhiteBalance", "1", "Manual"},
             Row{"exif:WhiteBalance", "7", "7"},
             Row{"exif:SceneCaptureType", "3", "Night Scene"},
             Row{"exif:ExposureMode", "2", "Auto Bracket"},
             Row{"exif:GPSLatitude", "43/1, 28/1, 2814/1000", "43/1, 28/1, 2814/1000"},
             Row{"exif:SceneType", "1", "1"},
         }) {
        EXPECT_EQ(formatValue(text(row.key), text(row.value)), text(row.shown)) << row.key << ' ' << row.value;
    }
}

TEST(IsDisplayableKey, TakesPrefixesAndProfilesInAnyCase) {
    for (const char* key : {"EXIF:MAKE", "exif:MakerNote", "exif:GPSVersionID", "exif:LensSerialNumber",
                            "exif:FlashPixVersion", "Profile-icc", "x Profile-XMP y", "iptc:City[2,90]", "xmp:Rating",
                            "8BIM:1036", "dng:create.date", "icc:descriptions"}) {
        EXPECT_TRUE(isDisplayableKey(text(key))) << key;
    }
    for (const char* key : {"", "exif:", "exif:ComponentsConfiguration", "xexif:Make", "Profile-iptc", "icc:brand",
                            "jpeg:colorspace", "png:IHDR.bit_depth", "Geometry", "dng:lens", "date:create"}) {
        EXPECT_FALSE(isDisplayableKey(text(key))) << key;
    }
}

TEST(ParseMetadata, WorksOnLinesAlone) {
    struct Row {
        const char* text;
        Table table;
        bool has;
    };
    for (const Row& row : {
             Row{"", {}, false},
             Row{"Properties:\n  exif:Make: Canon\n", {{text("Camera Make"), text("Canon")}}, true},
             Row{"  exif:Artist: \n", {}, false},
             Row{"exif:Make:Canon", {}, false},
             Row{"exif:Flash: none\nexif:Software: N/A\nexif:Make: False\nexif:Model: not AVAILABLE", {}, true},
             Row{"exif:Make: identify: no such file", {}, true},
             Row{"exif:Make:   :   x ", {{text("Camera Make"), text(":   x")}}, true},
             Row{"dng:Make: A: B", {{text("DNG Make"), text("A: B")}}, true},
             Row{": value", {}, false},
             Row{"EXIF:MAKE: None of these", {{text("Camera Make"), text("None of these")}}, true},
             Row{"exif:DateTime: 1\nexif:DateTimeOriginal: 2", {{text("Date Taken"), text("2")}}, true},
             Row{"exif:DateTimeOriginal: 2\nexif:DateTime: 1", {{text("Date Taken"), text("1")}}, true},
             Row{"a: b\rexif:Make: x\vexif:Model: y\u2028exif:ISO: 1\u0085exif:Flash: 2\fGeometry: 1x1",
                 {{text("Camera Make"), text("x")},
                  {text("Camera Model"), text("y")},
                  {text("ISO Speed"), text("1")},
                  {text("Flash"), text("2")}},
                 true},
             Row{"\u00a0exif:Make: x\u3000\n\n\n", {{text("Camera Make"), text("x")}}, true},
             Row{"Profile-icc: 3144 bytes\nGeometry: 1x1\nicc:copyright:\n  : ",
                 {{text("ICC Color Profile"), text("3144 bytes")}},
                 true},
         }) {
        EXPECT_EQ(parseMetadata(text(row.text)), row.table) << row.text;
        EXPECT_EQ(holdsMetadata(text(row.text)), row.has) << row.text;
    }
}

TEST(ParseMetadata, KeepsTheOrderOfTheTable) {
    const QString lines = text("exif:Artist: 1\nexif:ApertureValue: 2\nexif:FocalLengthIn35mmFilm: 3\nxmp:a: 4\n");
    EXPECT_EQ(parseMetadata(lines).keys().join(u'|'), text("35mm Focal Length|Aperture Value|Artist|xmp:a"));
}

}  // namespace
}  // namespace sorvik
