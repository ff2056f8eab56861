#include "ui/preferences/output_tab_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QShowEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

#include "ui/preferences/default_format_conversion_view.h"
#include "ui/preferences/setting_binding.h"

namespace sorvik {
namespace {

constexpr int labelWidth = 60;

struct FieldRow {
    const char* name;
    const char* label;
    const char* placeholder;
    QProperty<QString> AppSettings::*setting;
};

struct Group {
    const char* title;
    std::array<FieldRow, 2> fields;
};

constexpr std::array groups{
    Group{"Conversion mode naming:",
          {FieldRow{"outputPrefixField", "Prefix:", "e.g., converted_", &AppSettings::outputPrefix},
           FieldRow{"outputSuffixField", "Suffix:", "e.g., _converted", &AppSettings::outputSuffix}}},
    Group{"Compression mode naming:",
          {FieldRow{"compressionPrefixField", "Prefix:", "e.g., compressed_", &AppSettings::compressionPrefix},
           FieldRow{"compressionSuffixField", "Suffix:", "e.g., _compressed", &AppSettings::compressionSuffix}}},
};

constexpr std::array examples{
    "Examples:",
    "• Convert only: 'converted_image_new.jpg'",
    "• Compress only: 'compressed_image_small.jpg'",
    "• Convert + compress: 'converted_compressed_image_small_new.jpg'",
    "• Leave all fields empty to overwrite original files",
};

/// The label goes into the row before the field.
QLineEdit* addField(QHBoxLayout& row, const Group& group, const FieldRow& field) {
    auto* label = new QLabel(QString::fromUtf8(field.label));
    label->setFixedWidth(labelWidth);
    auto* edit = new QLineEdit;
    edit->setObjectName(QString::fromUtf8(field.name));
    edit->setPlaceholderText(QString::fromUtf8(field.placeholder));
    edit->setAccessibleName(QString::fromUtf8(group.title) + u' ' + QString::fromUtf8(field.label));
    label->setBuddy(edit);
    row.addWidget(label);
    row.addWidget(edit, 1);
    return edit;
}

}  // namespace

OutputTabView::OutputTabView(AppSettings& settings, QWidget* parent)
    : PreferencesPage(parent),
      settings_(settings),
      formatMappings_(settings.store()),
      conversions_(new DefaultFormatConversionView(formatMappings_)) {
    addNaming();
    addSlashHint();
    addExamples();
    stack().addWidget(makeDivider());
    stack().addWidget(conversions_);
}

void OutputTabView::addNaming() {
    stack().addWidget(makeHeadline(QStringLiteral("File naming")));
    for (const Group& group : groups) {
        auto* row = new QHBoxLayout;
        row->setSpacing(8);
        for (const FieldRow& field : group.fields) {
            observers_.push_back(bindSetting(*addField(*row, group, field), settings_.*field.setting));
        }
        auto* lines = new QVBoxLayout;
        lines->setSpacing(4);
        lines->addWidget(new QLabel(QString::fromUtf8(group.title)));
        lines->addLayout(row);
        stack().addLayout(lines);
    }
}

/// An affix may hold anything; a separator of folders is allowed and easily surprises.
void OutputTabView::addSlashHint() {
    QLabel* hint = makeCaption(QStringLiteral(
        "With \"/\" in a name results go to a folder beside the original, which has to be there already."));
    hint->setObjectName(QStringLiteral("slashHint"));
    stack().addWidget(hint);
    const auto show = [this, hint] { hint->setVisible(anyAffixHoldsSlash()); };
    show();
    for (const Group& group : groups) {
        for (const FieldRow& field : group.fields) {
            observers_.push_back((settings_.*field.setting).addNotifier(show));
        }
    }
}

void OutputTabView::addExamples() {
    auto* lines = new QVBoxLayout;
    lines->setSpacing(2);
    for (const char* each : examples) {
        lines->addWidget(makeCaption(QString::fromUtf8(each)));
    }
    stack().addLayout(lines);
}

bool OutputTabView::anyAffixHoldsSlash() const {
    return std::ranges::any_of(groups, [this](const Group& group) {
        return std::ranges::any_of(
            group.fields, [this](const FieldRow& field) { return (settings_.*field.setting).value().contains(u'/'); });
    });
}

void OutputTabView::showEvent(QShowEvent* event) {
    PreferencesPage::showEvent(event);
    if (!event->spontaneous()) {
        formatMappings_.reload();
        conversions_->refresh();
    }
}

}  // namespace sorvik
