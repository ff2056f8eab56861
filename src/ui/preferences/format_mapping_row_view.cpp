#include "ui/preferences/format_mapping_row_view.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPainter>
#include <QSignalBlocker>
#include <QToolButton>

#include <span>

#include "ui/look/symbol_label.h"
#include "ui/look/theme.h"
#include "ui/preferences/preferences_page.h"

namespace sorvik {
namespace {

constexpr int pickerWidth = 80;
constexpr int arrowSize = 16;

template <typename Format>
bool offers(const QComboBox& picker, std::span<const Format> formats) {
    const auto held = [&](int index) { return static_cast<Format>(picker.itemData(index).toInt()); };
    int index = 0;
    return picker.count() == static_cast<int>(formats.size()) &&
           std::ranges::all_of(formats, [&](Format each) { return each == held(index++); });
}

/// Entries that are the right ones already stay: a picker must not lose them while it tells of a choice among them.
template <typename Format>
void offer(QComboBox& picker, std::span<const Format> formats, Format chosen) {
    const QSignalBlocker blocker(picker);
    if (!offers(picker, formats)) {
        picker.clear();
        for (const Format each : formats) {
            picker.addItem(rawValue(each), static_cast<int>(each));
        }
    }
    picker.setCurrentIndex(picker.findData(static_cast<int>(chosen)));
}

}  // namespace

FormatMappingRowView::FormatMappingRowView(QWidget* parent)
    : QWidget(parent),
      inputPicker_(makePicker(QStringLiteral("inputFormatPicker"))),
      outputPicker_(makePicker(QStringLiteral("outputFormatPicker"))),
      removeButton_(makeRemoveButton()) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 12, 6);
    row->setSpacing(12);
    row->addWidget(inputPicker_);
    row->addWidget(new SymbolLabel(Symbol::arrowRight, arrowSize));
    row->addWidget(outputPicker_);
    row->addStretch();
    row->addWidget(removeButton_);
    connectPickers();
}

QComboBox* FormatMappingRowView::makePicker(const QString& name) {
    auto* picker = new QComboBox;
    picker->setObjectName(name);
    picker->setFixedWidth(pickerWidth);
    picker->setMaxVisibleItems(static_cast<int>(inputFormatCount));
    leaveWheelToPage(*picker);
    return picker;
}

QToolButton* FormatMappingRowView::makeRemoveButton() {
    auto* button = new QToolButton;
    button->setObjectName(QStringLiteral("removeMappingButton"));
    button->setIcon(symbolIcon(Symbol::minus));
    button->setAutoRaise(true);
    button->setToolTip(QStringLiteral("Remove mapping"));
    connect(button, &QToolButton::clicked, this, [this] { emit removeMapping(mapping_.id); });
    return button;
}

void FormatMappingRowView::connectPickers() {
    const auto tell = [this] {
        emit updateMapping(mapping_.id, static_cast<InputFormat>(inputPicker_->currentData().toInt()),
                           static_cast<ImageFormat>(outputPicker_->currentData().toInt()));
    };
    connect(inputPicker_, &QComboBox::currentIndexChanged, this, tell);
    connect(outputPicker_, &QComboBox::currentIndexChanged, this, tell);
}

void FormatMappingRowView::display(const FormatMapping& mapping, const std::vector<InputFormat>& inputs,
                                   std::size_t index, std::size_t totalCount) {
    mapping_ = mapping;
    isLast_ = index + 1 == totalCount;
    offer(*inputPicker_, std::span(inputs), mapping.inputFormat);
    offer(*outputPicker_, supportedOutputFormats(mapping.inputFormat), mapping.outputFormat);
    nameForReaders(index, totalCount);
    update();
}

void FormatMappingRowView::nameForReaders(std::size_t index, std::size_t totalCount) {
    const QString place = QStringLiteral("mapping %1 of %2").arg(index + 1).arg(totalCount);
    inputPicker_->setAccessibleName(QStringLiteral("Input format, ") + place);
    outputPicker_->setAccessibleName(QStringLiteral("Output format, ") + place);
    removeButton_->setAccessibleName(QStringLiteral("Remove ") + place);
}

void FormatMappingRowView::focusRemoveButton() { removeButton_->setFocus(Qt::OtherFocusReason); }

void FormatMappingRowView::paintEvent(QPaintEvent* /*event*/) {
    if (!isLast_) {
        QPainter painter(this);
        painter.fillRect(1, height() - 1, width() - 2, 1, lineColour(palette()));
    }
}

}  // namespace sorvik
