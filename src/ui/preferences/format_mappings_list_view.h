#pragma once

#include <QWidget>

#include <vector>

#include "core/format_mappings.h"
#include "ui/preferences/format_mapping_row_view.h"

class QLabel;
class QToolButton;
class QVBoxLayout;

namespace sorvik {

/// The default targets: their number, a button that adds one, and a row each.
class FormatMappingsListView final : public QWidget {
    Q_OBJECT

public:
    /// `mappings` must outlive the view and be changed through it alone, or refresh() be called.
    explicit FormatMappingsListView(FormatMappings& mappings, QWidget* parent = nullptr);

    void refresh();

private:
    void layOut();
    void addNewMapping();
    void removeMapping(const QUuid& id);
    void refreshHeader();
    void refreshRows();
    void dropStaleRows();
    void appendRow();
    void focusNear(std::size_t index);

    FormatMappings& mappings_;
    QLabel* header_;
    QToolButton* addButton_;
    QLabel* empty_;
    QVBoxLayout* rowStack_;
    std::vector<FormatMappingRowView*> rows_;  ///< in the order of the mappings
};

}  // namespace sorvik
