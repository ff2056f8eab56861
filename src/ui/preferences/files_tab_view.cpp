#include "ui/preferences/files_tab_view.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

#include "ui/preferences/format_compression_slider.h"
#include "ui/preferences/setting_binding.h"

namespace sorvik {
namespace {

constexpr int explanationIndent = 20;

struct SwitchRow {
    const char* name;
    const char* text;
    QProperty<bool> AppSettings::*setting;
    const char* explanation;
};

constexpr std::array switches{
    SwitchRow{"removeMetadataCheckBox", "Strip files metadata (JPEG, PNG, TIFF, HEIC, RAW, PSD, PDF)",
              &AppSettings::removeMetadata,
              "Removes EXIF data, color profiles, GPS coordinates, and other embedded information. This makes files "
              "smaller and removes potentially sensitive information."},
    SwitchRow{"convertCompressionCheckBox", "Compress output images in convert mode",
              &AppSettings::convertCompressionEnabled, "Enable compression when converting between formats"},
    SwitchRow{"autoCompressionCheckBox", "Auto compress mode", &AppSettings::autoCompressionEnabled,
              "When enabled, files automatically start compressing when dropped in compress mode"},
};

constexpr FormatCompressionSlider::Range quality{10, 100};
constexpr FormatCompressionSlider::Range level{1, 9};
constexpr auto percent = "%";
constexpr auto noUnit = "";

struct SliderRow {
    const char* name;
    const char* title;
    QProperty<double> AppSettings::*setting;
    FormatCompressionSlider::Range range;
    const char* unit;
    const char* description;
};

constexpr std::array sliders{
    SliderRow{"jpegQualitySlider", "JPEG quality", &AppSettings::jpegCompressionQuality, quality, percent,
              "Lossy compression - lower = smaller files, some quality loss"},
    SliderRow{"webpQualitySlider", "WebP quality", &AppSettings::webpCompressionQuality, quality, percent,
              "Lossy/Lossless - lower = smaller files"},
    SliderRow{"pngCompressionSlider", "PNG compression", &AppSettings::pngCompressionLevel, level, noUnit,
              "Lossless - higher = better compression, slower"},
    SliderRow{"gifCompressionSlider", "GIF compression", &AppSettings::gifCompressionLevel, level, noUnit,
              "Lossless - palette optimization and frame reduction"},
    SliderRow{"tiffQualitySlider", "TIFF quality", &AppSettings::tiffCompressionQuality, quality, percent,
              "Lossy/Lossless - JPEG compression within TIFF"},
    SliderRow{"avifQualitySlider", "AVIF quality", &AppSettings::avifCompressionQuality, quality, percent,
              "Next-gen format - best compression efficiency"},
    SliderRow{"pdfQualitySlider", "PDF quality", &AppSettings::pdfCompressionQuality, quality, percent,
              "Compress images within PDF documents"},
};

}  // namespace

FilesTabView::FilesTabView(AppSettings& settings, QWidget* parent) : PreferencesPage(parent), settings_(settings) {
    addSwitches();
    stack().addWidget(makeDivider());
    addCompressionHeading();
    addSliders();
}

void FilesTabView::addSwitches() {
    for (const SwitchRow& row : switches) {
        auto* box = new QCheckBox(QString::fromUtf8(row.text));
        box->setObjectName(QString::fromUtf8(row.name));
        box->setAccessibleDescription(QString::fromUtf8(row.explanation));
        observers_.push_back(bindSetting(*box, settings_.*row.setting));
        QLabel* explanation = makeCaption(QString::fromUtf8(row.explanation));
        explanation->setContentsMargins(explanationIndent, 0, 0, 0);
        auto* pair = new QVBoxLayout;
        pair->setSpacing(2);
        pair->addWidget(box, 0, Qt::AlignLeft);
        pair->addWidget(explanation);
        stack().addLayout(pair);
    }
}

void FilesTabView::addCompressionHeading() {
    auto* clear = new QPushButton(QStringLiteral("Clear settings"));
    clear->setObjectName(QStringLiteral("clearSettingsButton"));
    clear->setAccessibleDescription(QStringLiteral("Sets all compression values back to their defaults"));
    connect(clear, &QPushButton::clicked, this, [this] { settings_.resetCompressionDefaults(); });
    auto* row = new QHBoxLayout;
    row->addWidget(makeHeadline(QStringLiteral("Compression quality settings")));
    row->addStretch();
    row->addWidget(clear);
    auto* heading = new QVBoxLayout;
    heading->setSpacing(2);
    heading->addLayout(row);
    heading->addWidget(
        makeCaption(QStringLiteral("Quality settings used by both convert mode (when enabled) and compress mode")));
    stack().addLayout(heading);
}

void FilesTabView::addSliders() {
    std::vector<FormatCompressionSlider*> views;
    int titleWidth = 0;
    for (const SliderRow& row : sliders) {
        auto* view = new FormatCompressionSlider(QString::fromUtf8(row.title), settings_.*row.setting, row.range,
                                                 QString::fromUtf8(row.unit), QString::fromUtf8(row.description));
        view->slider().setObjectName(QString::fromUtf8(row.name));
        titleWidth = std::max(titleWidth, view->titleWidth());
        stack().addWidget(view);
        views.push_back(view);
    }
    for (FormatCompressionSlider* view : views) {
        view->setTitleWidth(titleWidth);
    }
}

}  // namespace sorvik
