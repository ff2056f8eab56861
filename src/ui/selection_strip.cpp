#include "ui/selection_strip.h"

#include <QHBoxLayout>
#include <QSignalBlocker>

#include <algorithm>

#include "ui/look/symbols.h"

namespace sorvik {

SelectionStrip::SelectionStrip(QWidget* parent)
    : QWidget(parent),
      count_(new QLabel(this)),
      selectAll_(new QPushButton(this)),
      picker_(new QComboBox(this)),
      updateAll_(new QPushButton(QStringLiteral("Update all"), this)),
      clear_(new QToolButton(this)) {
    setObjectName(QStringLiteral("selectionStrip"));
    count_->setObjectName(QStringLiteral("selectedCountLabel"));
    selectAll_->setObjectName(QStringLiteral("selectAllFormatButton"));
    picker_->setObjectName(QStringLiteral("bulkFormatPicker"));
    picker_->setAccessibleName(QStringLiteral("Convert to:"));
    picker_->addItem(QStringLiteral("Select format"));
    picker_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    updateAll_->setObjectName(QStringLiteral("updateAllButton"));
    clear_->setObjectName(QStringLiteral("clearSelectionButton"));
    clear_->setAccessibleName(QStringLiteral("Clear selection"));
    clear_->setToolTip(QStringLiteral("Clear selection"));
    clear_->setIcon(symbolIcon(Symbol::clear, QPalette::PlaceholderText));
    clear_->setAutoRaise(true);
    clear_->setFocusPolicy(Qt::StrongFocus);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(count_);
    row->addWidget(selectAll_);
    row->addStretch();
    auto* label = new QLabel(QStringLiteral("Convert to:"), this);
    label->setBuddy(picker_);
    row->addWidget(label);
    row->addWidget(picker_);
    row->addWidget(updateAll_);
    row->addWidget(clear_);
    connect(selectAll_, &QPushButton::clicked, this, &SelectionStrip::selectAllRequested);
    connect(updateAll_, &QPushButton::clicked, this, &SelectionStrip::updateAllRequested);
    connect(clear_, &QToolButton::clicked, this, &SelectionStrip::clearRequested);
    connect(picker_, &QComboBox::currentIndexChanged, this, [this](int index) {
        emit outputFormatChosen(index < 1 ? std::nullopt
                                          : std::optional(offered_[static_cast<std::size_t>(index) - 1]));
    });
}

void SelectionStrip::show(const BottomBarState& state) {
    setVisible(state.selectedCount > 0 && state.processingMode == ProcessingMode::convert);
    count_->setText(selectedText(state));
    selectAll_->setVisible(state.selectedFormat.has_value());
    if (state.selectedFormat) {
        selectAll_->setText(QStringLiteral("Select all ") + rawValue(*state.selectedFormat));
    }
    offer(state);
    updateAll_->setEnabled(state.selectedOutputFormat.has_value());
}

void SelectionStrip::offer(const BottomBarState& state) {
    const QSignalBlocker silent(picker_);
    if (offered_ != state.availableOutputFormats) {
        offered_ = state.availableOutputFormats;
        while (picker_->count() > 1) {
            picker_->removeItem(1);
        }
        for (const ImageFormat format : offered_) {
            picker_->addItem(rawValue(format));
        }
    }
    const auto chosen =
        state.selectedOutputFormat ? std::ranges::find(offered_, *state.selectedOutputFormat) : offered_.end();
    picker_->setCurrentIndex(chosen == offered_.end() ? 0 : static_cast<int>(chosen - offered_.begin()) + 1);
}

}  // namespace sorvik
