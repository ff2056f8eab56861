#include <gtest/gtest.h>

#include <QColor>
#include <QPalette>

#include <algorithm>
#include <array>
#include <cmath>

#include "ui/look/theme.h"

namespace sorvik {
namespace {

/// WCAG 2.1, relative luminance.
double luminance(const QColor& colour) {
    const auto linear = [](float channel) {
        const auto value = static_cast<double>(channel);
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

TEST(Theme, TextCanBeReadOnEverythingItStandsOn) {
    constexpr std::array grounds{QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button,
                                 QPalette::Midlight};
    constexpr std::array texts{QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText,
                               QPalette::Link};
    for (const bool dark : {false, true}) {
        const QPalette palette = themePalette(dark);
        for (const auto ground : grounds) {
            for (const auto text : texts) {
                EXPECT_GE(contrast(palette.color(text), palette.color(ground)), 4.5) << dark << text << ground;
            }
        }
        for (const auto ground : {QPalette::Window, QPalette::Base, QPalette::AlternateBase}) {
            EXPECT_GE(contrast(failureColour(palette), palette.color(ground)), 4.5) << dark << ground;
            EXPECT_GE(contrast(controlLineColour(palette), palette.color(ground)), 3) << dark << ground;
        }
        EXPECT_GE(contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), 4.5) << dark;
        EXPECT_GE(contrast(palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase)), 4.5) << dark;
    }
}

}  // namespace
}  // namespace sorvik
