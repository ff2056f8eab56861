#include "ui/preferences/default_format_conversion_view.h"

#include <QLabel>
#include <QVBoxLayout>

#include "ui/preferences/format_mappings_list_view.h"
#include "ui/preferences/preferences_page.h"

namespace sorvik {

DefaultFormatConversionView::DefaultFormatConversionView(FormatMappings& mappings, QWidget* parent)
    : QWidget(parent), list_(new FormatMappingsListView(mappings)) {
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(4);
    stack->addWidget(makeHeadline(QStringLiteral("Default format conversion")));
    stack->addWidget(makeCaption(
        QStringLiteral("Set default output formats for drag & drop. When you drop files, they'll automatically select "
                       "these formats.")));
    stack->addSpacing(4);
    stack->addWidget(list_);
}

void DefaultFormatConversionView::refresh() { list_->refresh(); }

}  // namespace sorvik
