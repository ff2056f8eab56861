#include "ui/look/theme.h"

#include <QApplication>
#include <QWidget>

#include <array>

#include "ui/look/house_style.h"

namespace sorvik {
namespace {

struct ColourRow {
    QPalette::ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr std::array colours{
    ColourRow{QPalette::Window, 0xFFF4F5F7, 0xFF202226},
    ColourRow{QPalette::WindowText, 0xFF1C1E22, 0xFFE9EAED},
    ColourRow{QPalette::Base, 0xFFFFFFFF, 0xFF18191C},
    ColourRow{QPalette::AlternateBase, 0xFFF7F8FA, 0xFF1C1E21},
    ColourRow{QPalette::Text, 0xFF1C1E22, 0xFFE9EAED},
    ColourRow{QPalette::PlaceholderText, 0xFF5C626C, 0xFFA6ACB7},
    ColourRow{QPalette::Button, 0xFFFFFFFF, 0xFF2E3137},
    ColourRow{QPalette::ButtonText, 0xFF1C1E22, 0xFFE9EAED},
    ColourRow{QPalette::BrightText, 0xFFFFFFFF, 0xFFFFFFFF},
    ColourRow{QPalette::Highlight, 0xFF1F66D1, 0xFF2F6FD6},
    ColourRow{QPalette::HighlightedText, 0xFFFFFFFF, 0xFFFFFFFF},
    ColourRow{QPalette::Link, 0xFF1A5BBD, 0xFF7FB0FF},
    ColourRow{QPalette::LinkVisited, 0xFF1A5BBD, 0xFF7FB0FF},
    ColourRow{QPalette::ToolTipBase, 0xFF2B2D31, 0xFF3A3D43},
    ColourRow{QPalette::ToolTipText, 0xFFF5F6F8, 0xFFF5F6F8},
    ColourRow{QPalette::Light, 0xFFFFFFFF, 0xFF3A3D44},
    ColourRow{QPalette::Midlight, 0xFFE8EAED, 0xFF34373D},
    ColourRow{QPalette::Mid, 0xFFC4C8CF, 0xFF4A4E56},
    ColourRow{QPalette::Dark, 0xFF9EA3AC, 0xFF5E636C},
    ColourRow{QPalette::Shadow, 0xFF6D7178, 0xFF000000},
};

constexpr std::array disabledText{QPalette::WindowText, QPalette::Text, QPalette::ButtonText};
constexpr QRgb disabledLight = 0xFF9096A0;
constexpr QRgb disabledDark = 0xFF6F757F;

constexpr QRgb failureLight = 0xFFB3261E;
constexpr QRgb failureDark = 0xFFFF8A80;
constexpr QRgb controlLineLight = 0xFF868C96;
constexpr QRgb controlLineDark = 0xFF7A808B;
constexpr QRgb scrollLight = 0xFFB4B9C1;
constexpr QRgb scrollDark = 0xFF555A63;

bool isDark(const QPalette& palette) { return palette.color(QPalette::Base).lightness() < 128; }

struct StyleRow {
    double scale;
    QFont::Weight weight;
};

constexpr std::array styles{
    StyleRow{1.45, QFont::Normal},   // title
    StyleRow{1.0, QFont::DemiBold},  // headline
    StyleRow{1.0, QFont::Normal},    // body
    StyleRow{0.88, QFont::Normal},   // caption
};
static_assert(styles.size() == static_cast<std::size_t>(TextStyle::caption) + 1);

}  // namespace

QPalette themePalette(bool dark) {
    QPalette palette;
    for (const ColourRow& row : colours) {
        palette.setColor(row.role, QColor::fromRgb(dark ? row.dark : row.light));
    }
    for (const QPalette::ColorRole role : disabledText) {
        palette.setColor(QPalette::Disabled, role, QColor::fromRgb(dark ? disabledDark : disabledLight));
    }
    return palette;
}

QColor failureColour(const QPalette& palette) { return QColor::fromRgb(isDark(palette) ? failureDark : failureLight); }

QColor lineColour(const QPalette& palette) { return palette.color(QPalette::Mid); }

QColor controlLineColour(const QPalette& palette) {
    return QColor::fromRgb(isDark(palette) ? controlLineDark : controlLineLight);
}

QColor scrollColour(const QPalette& palette) { return QColor::fromRgb(isDark(palette) ? scrollDark : scrollLight); }

void applyTheme(bool dark) {
    if (qobject_cast<HouseStyle*>(QApplication::style()) == nullptr) {
        QApplication::setStyle(new HouseStyle);
    }
    QApplication::setPalette(themePalette(dark));
}

QFont styledFont(const QFont& font, TextStyle style) {
    const StyleRow& row = styles[static_cast<std::size_t>(style)];
    QFont styled = font;
    if (font.pointSizeF() > 0) {
        styled.setPointSizeF(font.pointSizeF() * row.scale);
    } else {
        styled.setPixelSize(qRound(font.pixelSize() * row.scale));
    }
    styled.setWeight(row.weight);
    return styled;
}

void setTextStyle(QWidget& widget, TextStyle style) { widget.setFont(styledFont(QApplication::font(), style)); }

void setSecondary(QWidget& widget) { widget.setForegroundRole(QPalette::PlaceholderText); }

}  // namespace sorvik
