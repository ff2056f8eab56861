#pragma once

#include <QWidget>

#include "core/format_mappings.h"

namespace sorvik {

class FormatMappingsListView;

/// The section of the default targets: what they are for, and their list.
class DefaultFormatConversionView final : public QWidget {
    Q_OBJECT

public:
    /// `mappings` must outlive the view.
    explicit DefaultFormatConversionView(FormatMappings& mappings, QWidget* parent = nullptr);

    /// To be called when the mappings were changed by someone else.
    void refresh();

private:
    FormatMappingsListView* list_;
};

}  // namespace sorvik
