#pragma once

#include <QWidget>

#include <vector>

#include "core/format_mappings.h"

class QComboBox;
class QToolButton;

namespace sorvik {

/// One default target: two pickers with an arrow between them, and a button that removes it.
class FormatMappingRowView final : public QWidget {
    Q_OBJECT

public:
    explicit FormatMappingRowView(QWidget* parent = nullptr);

    [[nodiscard]] const QUuid& id() const { return mapping_.id; }

    /// `inputs` are what the input picker offers; `index` counts from 0 among `totalCount` rows.
    void display(const FormatMapping& mapping, const std::vector<InputFormat>& inputs, std::size_t index,
                 std::size_t totalCount);

    void focusRemoveButton();

signals:
    void updateMapping(const QUuid& id, InputFormat input, ImageFormat output);
    void removeMapping(const QUuid& id);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] static QComboBox* makePicker(const QString& name);
    [[nodiscard]] QToolButton* makeRemoveButton();
    void connectPickers();
    void nameForReaders(std::size_t index, std::size_t totalCount);

    FormatMapping mapping_{};
    bool isLast_ = true;
    QComboBox* inputPicker_;
    QComboBox* outputPicker_;
    QToolButton* removeButton_;
};

}  // namespace sorvik
