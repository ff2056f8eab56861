#include "ui/preferences/format_mappings_list_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

#include "ui/look/card.h"
#include "ui/look/symbols.h"
#include "ui/look/theme.h"

namespace sorvik {
namespace {

constexpr int emptyHeight = 120;

}  // namespace

FormatMappingsListView::FormatMappingsListView(FormatMappings& mappings, QWidget* parent)
    : QWidget(parent),
      mappings_(mappings),
      header_(new QLabel),
      addButton_(new QToolButton),
      empty_(new QLabel(QStringLiteral("No format mappings configured"))),
      rowStack_(new QVBoxLayout) {
    header_->setObjectName(QStringLiteral("mappingsHeader"));
    setSecondary(*header_);
    addButton_->setObjectName(QStringLiteral("addMappingButton"));
    addButton_->setIcon(symbolIcon(Symbol::plus));
    connect(addButton_, &QToolButton::clicked, this, &FormatMappingsListView::addNewMapping);
    empty_->setObjectName(QStringLiteral("noMappingsText"));
    empty_->setFixedHeight(emptyHeight);
    empty_->setAlignment(Qt::AlignCenter);
    setSecondary(*empty_);
    layOut();
    refresh();
}

void FormatMappingsListView::layOut() {
    auto* headerRow = new QHBoxLayout;
    headerRow->addWidget(header_);
    headerRow->addStretch();
    headerRow->addWidget(addButton_);
    auto* card = new Card;
    rowStack_->setContentsMargins(0, 0, 0, 0);
    rowStack_->setSpacing(0);
    rowStack_->addWidget(empty_);
    card->setLayout(rowStack_);
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(6);
    stack->addLayout(headerRow);
    stack->addWidget(card);
}

void FormatMappingsListView::addNewMapping() {
    mappings_.addNewMapping();
    refresh();
}

void FormatMappingsListView::removeMapping(const QUuid& id) {
    const auto row = std::ranges::find(rows_, id, &FormatMappingRowView::id);
    const auto index = static_cast<std::size_t>(row - rows_.begin());
    const bool hadFocus = row != rows_.end() && (*row)->isAncestorOf((*row)->window()->focusWidget());
    mappings_.removeMapping(id);
    refresh();
    if (hadFocus) {
        focusNear(index);
    }
}

/// One who works by keys goes on where the removed row stood.
void FormatMappingsListView::focusNear(std::size_t index) {
    if (rows_.empty()) {
        addButton_->setFocus(Qt::OtherFocusReason);
    } else {
        rows_[std::min(index, rows_.size() - 1)]->focusRemoveButton();
    }
}

void FormatMappingsListView::refresh() {
    refreshHeader();
    refreshRows();
    empty_->setVisible(rows_.empty());
}

void FormatMappingsListView::refreshHeader() {
    header_->setText(mappings_.header());
    const bool canAdd = mappings_.canAddNewMapping();
    addButton_->setEnabled(canAdd);
    addButton_->setAccessibleName(QStringLiteral("Add format mapping"));
    addButton_->setToolTip(canAdd ? QStringLiteral("Add format mapping")
                                  : QStringLiteral("All input formats are already mapped"));
}

void FormatMappingsListView::refreshRows() {
    dropStaleRows();
    const auto& all = mappings_.all();
    while (rows_.size() < all.size()) {
        appendRow();
    }
    for (std::size_t index = 0; index < all.size(); ++index) {
        rows_[index]->display(all[index], mappings_.inputsFor(all[index]), index, all.size());
    }
}

void FormatMappingsListView::dropStaleRows() {
    std::erase_if(rows_, [this](FormatMappingRowView* row) {
        const bool stale = std::ranges::find(mappings_.all(), row->id(), &FormatMapping::id) == mappings_.all().end();
        if (stale) {
            rowStack_->removeWidget(row);
            row->hide();
            row->deleteLater();  // the row itself may be asking
        }
        return stale;
    });
}

void FormatMappingsListView::appendRow() {
    auto* row = new FormatMappingRowView;
    connect(row, &FormatMappingRowView::removeMapping, this, &FormatMappingsListView::removeMapping);
    connect(row, &FormatMappingRowView::updateMapping, this,
            [this](const QUuid& id, InputFormat input, ImageFormat output) {
                mappings_.updateMapping(id, input, output);
                refresh();
            });
    rowStack_->addWidget(row);
    rows_.push_back(row);
}

}  // namespace sorvik
