#include "metadata/verbose_parser.h"

#include <algorithm>
#include <array>
#include <optional>

#include "metadata/presentation.h"
#include "metadata/text_table.h"

namespace sorvik {
namespace {

constexpr std::array<std::u16string_view, 55> displayablePrefixes{
    u"exif:make",
    u"exif:model",
    u"exif:datetime",
    u"exif:software",
    u"exif:artist",
    u"exif:copyright",
    u"exif:gps",
    u"exif:lens",
    u"exif:imagedescription",
    u"exif:isospeedratings",
    u"exif:iso",
    u"exif:exposuretime",
    u"exif:fnumber",
    u"exif:focallength",
    u"exif:flash",
    u"exif:whitebalance",
    u"exif:meteringmode",
    u"exif:exposureprogram",
    u"exif:exposurebias",
    u"exif:exposurebiasvalue",
    u"exif:maxaperturevalue",
    u"exif:shutterspeedvalue",
    u"exif:aperturevalue",
    u"exif:brightnessvalue",
    u"exif:exposuremode",
    u"exif:scenecapturetype",
    u"exif:digitalzoomratio",
    u"exif:sensingmethod",
    u"exif:filesource",
    u"exif:scenetype",
    u"exif:customrendered",
    u"exif:gaincontrol",
    u"exif:contrast",
    u"exif:saturation",
    u"exif:sharpness",
    u"exif:subjectdistancerange",
    u"exif:colorspace",
    u"exif:pixelxdimension",
    u"exif:pixelydimension",
    u"exif:orientation",
    u"exif:xresolution",
    u"exif:yresolution",
    u"exif:resolutionunit",
    u"icc:description",
    u"icc:manufacturer",
    u"icc:model",
    u"icc:copyright",
    u"dng:make",
    u"dng:model",
    u"dng:software",
    u"dng:create.date",
    u"dng:camera.model.name",
    u"iptc:",
    u"xmp:",
    u"8bim:",
};
constexpr std::array<std::u16string_view, 3> displayableParts{u"profile-icc", u"profile-xmp", u"profile-exif"};
constexpr std::array<std::u16string_view, 7> placeholderValues{u"undefined", u"none", u"null",         u"",
                                                               u"false",     u"n/a",  u"not available"};
static_assert(std::ranges::all_of(displayablePrefixes, isLowerCase));
static_assert(std::ranges::all_of(displayableParts, isLowerCase) &&
              std::ranges::all_of(placeholderValues, isLowerCase));

constexpr QStringView newlines = u"\n\v\f\r\u0085\u2028\u2029";
constexpr QStringView separator = u": ";
constexpr QStringView toolName = u"identify:";  // marks a complaint of the tool itself

struct Property {
    QString key;
    QString value;
};

/// Absent for an empty line, the head of a section, and what is no property.
std::optional<Property> propertyOf(QStringView line) {
    line = line.trimmed();
    const qsizetype split = line.endsWith(u':') ? -1 : line.indexOf(separator);
    if (split < 0) {
        return std::nullopt;
    }
    return Property{line.first(split).trimmed().toString(), line.sliced(split + separator.size()).trimmed().toString()};
}

/// Visits the properties of all lines in their order for as long as the visitor answers true.
template <typename Visitor>
void visitProperties(QStringView text, Visitor visit) {
    for (bool more = true; more && !text.isEmpty();) {
        const auto* const end = std::ranges::find_if(text, [](QChar c) { return newlines.contains(c); });
        const qsizetype length = end - text.begin();
        const auto property = propertyOf(text.first(length));
        more = !property || visit(*property);
        text = text.sliced(std::min(length + 1, text.size()));
    }
}

bool isTelling(const Property& property) {
    return !property.key.isEmpty() && !property.value.isEmpty() && !property.value.contains(toolName) &&
           std::ranges::find(placeholderValues, unitsOf(property.value.toLower().trimmed())) == placeholderValues.end();
}

}  // namespace

bool isDisplayableKey(const QString& key) {
    const QString lower = key.toLower();
    const std::u16string_view units = unitsOf(lower);
    return std::ranges::any_of(displayablePrefixes, [&](auto prefix) { return units.starts_with(prefix); }) ||
           std::ranges::any_of(displayableParts,
                               [&](auto part) { return units.find(part) != std::u16string_view::npos; });
}

bool holdsMetadata(QStringView verboseText) {
    bool found = false;
    visitProperties(verboseText, [&](const Property& property) {
        found = isDisplayableKey(property.key);
        return !found;
    });
    return found;
}

QMap<QString, QString> parseMetadata(QStringView verboseText) {
    QMap<QString, QString> result;
    visitProperties(verboseText, [&](const Property& property) {
        if (isTelling(property) && isDisplayableKey(property.key)) {
            if (const QString label = displayLabel(property.key); !label.isEmpty()) {
                result.insert(label, formatValue(property.key, property.value));
            }
        }
        return true;
    });
    return result;
}

}  // namespace sorvik
