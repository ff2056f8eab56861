#include "ui/preferences/general_tab_view.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <array>

namespace sorvik {
namespace {

constexpr int labelWidth = 100;
constexpr int rowSpacing = 12;

// In the order of AppearanceMode.
constexpr std::array appearances{"System", "Light", "Dark"};
static_assert(appearances.size() == static_cast<std::size_t>(AppearanceMode::dark) + 1);

}  // namespace

GeneralTabView::GeneralTabView(AppSettings& settings, QWidget* parent) : PreferencesPage(parent), settings_(settings) {
    auto* label = new QLabel(QStringLiteral("Appearance:"));
    label->setFixedWidth(labelWidth);
    QComboBox* picker = makePicker();
    label->setBuddy(picker);
    auto* row = new QHBoxLayout;
    row->setSpacing(rowSpacing);
    row->addWidget(label);
    row->addWidget(picker);
    row->addStretch();
    stack().addLayout(row);
}

QComboBox* GeneralTabView::makePicker() {
    auto* picker = new QComboBox;
    picker->setObjectName(QStringLiteral("appearancePicker"));
    picker->setAccessibleName(QStringLiteral("Appearance"));
    for (const char* each : appearances) {
        picker->addItem(QString::fromLatin1(each));
    }
    leaveWheelToPage(*picker);
    const auto show = [this, picker] { picker->setCurrentIndex(static_cast<int>(settings_.appearanceMode.value())); };
    show();
    connect(picker, &QComboBox::currentIndexChanged, this,
            [this](int index) { settings_.appearanceMode = static_cast<AppearanceMode>(index); });
    observer_ = settings_.appearanceMode.addNotifier(show);
    return picker;
}

}  // namespace sorvik
