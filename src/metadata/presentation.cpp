#include "metadata/presentation.h"

#include <array>
#include <span>

#include "metadata/text_table.h"

namespace sorvik {
namespace {

constexpr std::array labels{
    TextRow{u"exif:make", u"Camera Make"},
    TextRow{u"exif:model", u"Camera Model"},
    TextRow{u"exif:datetime", u"Date Taken"},
    TextRow{u"exif:datetimeoriginal", u"Date Taken"},
    TextRow{u"exif:datetimedigitized", u"Date Digitized"},
    TextRow{u"exif:isospeedratings", u"ISO Speed"},
    TextRow{u"exif:iso", u"ISO Speed"},
    TextRow{u"exif:exposuretime", u"Exposure Time"},
    TextRow{u"exif:fnumber", u"F-Number"},
    TextRow{u"exif:focallength", u"Focal Length"},
    TextRow{u"exif:exposureprogram", u"Exposure Program"},
    TextRow{u"exif:meteringmode", u"Metering Mode"},
    TextRow{u"exif:flash", u"Flash"},
    TextRow{u"exif:whitebalance", u"White Balance"},
    TextRow{u"exif:exposurebias", u"Exposure Bias"},
    TextRow{u"exif:exposurebiasvalue", u"Exposure Bias"},
    TextRow{u"exif:maxaperturevalue", u"Max Aperture"},
    TextRow{u"exif:shutterspeedvalue", u"Shutter Speed"},
    TextRow{u"exif:aperturevalue", u"Aperture Value"},
    TextRow{u"exif:brightnessvalue", u"Brightness"},
    TextRow{u"exif:exposuremode", u"Exposure Mode"},
    TextRow{u"exif:scenecapturetype", u"Scene Type"},
    TextRow{u"exif:digitalzoomratio", u"Digital Zoom"},
    TextRow{u"exif:focallengthin35mmfilm", u"35mm Focal Length"},
    TextRow{u"exif:sensingmethod", u"Sensing Method"},
    TextRow{u"exif:filesource", u"File Source"},
    TextRow{u"exif:scenetype", u"Scene Type"},
    TextRow{u"exif:customrendered", u"Custom Rendered"},
    TextRow{u"exif:gaincontrol", u"Gain Control"},
    TextRow{u"exif:contrast", u"Contrast"},
    TextRow{u"exif:saturation", u"Saturation"},
    TextRow{u"exif:sharpness", u"Sharpness"},
    TextRow{u"exif:subjectdistancerange", u"Subject Distance"},
    TextRow{u"exif:lensinfo", u"Lens Info"},
    TextRow{u"exif:lensmake", u"Lens Make"},
    TextRow{u"exif:lensmodel", u"Lens Model"},
    TextRow{u"exif:colorspace", u"EXIF Colorspace"},
    TextRow{u"exif:pixelxdimension", u"Pixel Width"},
    TextRow{u"exif:pixelydimension", u"Pixel Height"},
    TextRow{u"exif:software", u"Software"},
    TextRow{u"exif:artist", u"Artist"},
    TextRow{u"exif:copyright", u"Copyright"},
    TextRow{u"exif:imagedescription", u"Description"},
    TextRow{u"exif:orientation", u"EXIF Orientation"},
    TextRow{u"exif:xresolution", u"X Resolution"},
    TextRow{u"exif:yresolution", u"Y Resolution"},
    TextRow{u"exif:resolutionunit", u"Resolution Unit"},
    TextRow{u"exif:gpslatitude", u"GPS Latitude"},
    TextRow{u"exif:gpslongitude", u"GPS Longitude"},
    TextRow{u"exif:gpsaltitude", u"GPS Altitude"},
    TextRow{u"exif:gpstimestamp", u"GPS Time"},
    TextRow{u"exif:gpsdatestamp", u"GPS Date"},
    TextRow{u"exif:gpsmapdatum", u"GPS Map Datum"},
    TextRow{u"profile-icc", u"ICC Color Profile"},
    TextRow{u"profile-xmp", u"XMP Metadata Profile"},
    TextRow{u"profile-exif", u"EXIF Profile"},
    TextRow{u"icc:description", u"Color Profile"},
    TextRow{u"icc:manufacturer", u"Profile Manufacturer"},
    TextRow{u"icc:model", u"Profile Model"},
    TextRow{u"icc:copyright", u"Profile Copyright"},
};
static_assert(labels.size() == 60 && hasDistinctKeys(labels));
static_assert(std::ranges::all_of(labels, isLowerCase, &TextRow::key));

// The head of the label of every other property of a family. Families that have no row stand as they came.
constexpr std::array families{
    TextRow{u"exif:", u"EXIF "}, TextRow{u"icc:", u"ICC "},   TextRow{u"dng:", u"DNG "},
    TextRow{u"png:", u"PNG "},   TextRow{u"jpeg:", u"JPEG "}, TextRow{u"tiff:", u"TIFF "},
};
constexpr std::u16string_view dottedFamily = u"dng:";  // writes blanks as dots

// Bits: fired, return light, mode, no flash function, red-eye reduction.
constexpr std::array flashTexts{
    TextRow{u"0", u"No Flash"},
    TextRow{u"1", u"Flash Fired"},
    TextRow{u"5", u"Flash Fired, No Return"},
    TextRow{u"7", u"Flash Fired, Return Detected"},
    TextRow{u"9", u"Flash Fired, Compulsory"},
    TextRow{u"13", u"Flash Fired, Compulsory, No Return"},
    TextRow{u"15", u"Flash Fired, Compulsory, Return Detected"},
    TextRow{u"16", u"No Flash, Compulsory"},
    TextRow{u"24", u"No Flash, Auto"},
    TextRow{u"25", u"Flash Fired, Auto"},
    TextRow{u"29", u"Flash Fired, Auto, No Return"},
    TextRow{u"31", u"Flash Fired, Auto, Return Detected"},
    TextRow{u"32", u"No Flash Available"},
    TextRow{u"65", u"Flash Fired, Red-eye Reduction"},
    TextRow{u"69", u"Flash Fired, Red-eye Reduction, No Return"},
    TextRow{u"71", u"Flash Fired, Red-eye Reduction, Return Detected"},
    TextRow{u"73", u"Flash Fired, Compulsory, Red-eye Reduction"},
    TextRow{u"77", u"Flash Fired, Compulsory, Red-eye Reduction, No Return"},
    TextRow{u"79", u"Flash Fired, Compulsory, Red-eye Reduction, Return Detected"},
    TextRow{u"89", u"Flash Fired, Auto, Red-eye Reduction"},
    TextRow{u"93", u"Flash Fired, Auto, Red-eye Reduction, No Return"},
    TextRow{u"95", u"Flash Fired, Auto, Red-eye Reduction, Return Detected"},
};
constexpr std::array orientationTexts{
    TextRow{u"1", u"Normal"},
    TextRow{u"2", u"Mirror Horizontal"},
    TextRow{u"3", u"Rotate 180°"},
    TextRow{u"4", u"Mirror Vertical"},
    TextRow{u"5", u"Mirror Horizontal + Rotate 270°"},
    TextRow{u"6", u"Rotate 90°"},
    TextRow{u"7", u"Mirror Horizontal + Rotate 90°"},
    TextRow{u"8", u"Rotate 270°"},
};
constexpr std::array meteringTexts{
    TextRow{u"0", u"Unknown"}, TextRow{u"1", u"Average"},    TextRow{u"2", u"Center-weighted Average"},
    TextRow{u"3", u"Spot"},    TextRow{u"4", u"Multi-spot"}, TextRow{u"5", u"Pattern"},
    TextRow{u"6", u"Partial"}, TextRow{u"255", u"Other"},
};
constexpr std::array programTexts{
    TextRow{u"0", u"Not Defined"},      TextRow{u"1", u"Manual"},
    TextRow{u"2", u"Program AE"},       TextRow{u"3", u"Aperture Priority"},
    TextRow{u"4", u"Shutter Priority"}, TextRow{u"5", u"Creative Program"},
    TextRow{u"6", u"Action Program"},   TextRow{u"7", u"Portrait Mode"},
    TextRow{u"8", u"Landscape Mode"},   TextRow{u"9", u"Bulb"},
};
constexpr std::array sceneTexts{
    TextRow{u"0", u"Standard"},
    TextRow{u"1", u"Landscape"},
    TextRow{u"2", u"Portrait"},
    TextRow{u"3", u"Night Scene"},
};
constexpr std::array whiteBalanceTexts{
    TextRow{u"0", u"Auto"},
    TextRow{u"1", u"Manual"},
};
constexpr std::array exposureModeTexts{
    TextRow{u"0", u"Auto"},
    TextRow{u"1", u"Manual"},
    TextRow{u"2", u"Auto Bracket"},
};

/// What a value gets: something in front of it or behind it, or the meaning of its code.
struct FormatRow {
    std::u16string_view key;
    std::u16string_view prefix{};
    std::u16string_view suffix{};
    std::span<const TextRow> meanings{};
};

constexpr std::array formats{
    FormatRow{.key = u"exif:exposuretime", .suffix = u"s"},
    FormatRow{.key = u"exif:fnumber", .prefix = u"f/"},
    FormatRow{.key = u"exif:focallength", .suffix = u"mm"},
    FormatRow{.key = u"exif:focallengthin35mmfilm", .suffix = u"mm"},
    FormatRow{.key = u"exif:flash", .meanings = flashTexts},
    FormatRow{.key = u"exif:orientation", .meanings = orientationTexts},
    FormatRow{.key = u"exif:meteringmode", .meanings = meteringTexts},
    FormatRow{.key = u"exif:exposureprogram", .meanings = programTexts},
    FormatRow{.key = u"exif:whitebalance", .meanings = whiteBalanceTexts},
    FormatRow{.key = u"exif:scenecapturetype", .meanings = sceneTexts},
    FormatRow{.key = u"exif:exposuremode", .meanings = exposureModeTexts},
};
static_assert(hasDistinctKeys(formats) && std::ranges::all_of(formats, isLowerCase, &FormatRow::key));
static_assert(std::ranges::all_of(formats, [](const FormatRow& row) { return hasDistinctKeys(row.meanings); }));

/// The first letter of each word in upper case, the others as they are: the text is lower case already.
QString capitalized(QString text) {
    bool inWord = false;
    for (QChar& character : text) {
        if (!inWord && character.isLetter()) {
            character = character.toTitleCase();
            inWord = true;
        } else if (!character.isLetterOrNumber() && !character.isMark()) {
            inWord = false;
        }
    }
    return text;
}

QString familyLabel(const TextRow& family, const QString& lowerKey) {
    QString rest = capitalized(lowerKey.mid(static_cast<qsizetype>(family.key.size())));
    if (family.key == dottedFamily) {
        rest.replace(u'.', u' ');
    }
    return textOf(family.text) + rest;
}

}  // namespace

QString displayLabel(const QString& key) {
    const QString lower = key.toLower();
    if (auto label = lookUp(labels, lower)) {
        return *label;
    }
    const auto* family =
        std::ranges::find_if(families, [&](const TextRow& row) { return unitsOf(lower).starts_with(row.key); });
    return family == families.end() ? key : familyLabel(*family, lower);
}

QString formatValue(const QString& key, const QString& value) {
    const QString lower = key.toLower();
    const auto* row = std::ranges::find(formats, unitsOf(lower), &FormatRow::key);
    if (row == formats.end()) {
        return value;
    }
    return textOf(row->prefix) + lookUp(row->meanings, value).value_or(value) + textOf(row->suffix);
}

}  // namespace sorvik
