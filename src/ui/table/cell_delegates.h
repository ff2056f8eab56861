#pragma once

#include <QStyledItemDelegate>

#include <functional>

#include "ui/table/file_table_model.h"
#include "ui/table/metadata_icons.h"

// One delegate a kind of cell. They paint from the row itself; clicks and keys are the table's.

namespace sorvik {

/// Paints what all cells share, the selection and the focus, and leaves the content to the derived class.
class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    /// `option` is initialised for the index.
    virtual void paintContent(QPainter& painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const = 0;

    [[nodiscard]] static const FileTableModel& modelOf(const QModelIndex& index);
    [[nodiscard]] static const FileItem& fileOf(const QModelIndex& index);

    /// A colour of the palette, or the one for selected rows.
    [[nodiscard]] static QColor inkOf(const QStyleOptionViewItem& option, QPalette::ColorRole role);
    static void paintText(QPainter& painter, const QRect& box, const QColor& ink, const QFont& font,
                          const QString& text, Qt::TextElideMode elide = Qt::ElideRight,
                          Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter);
};

class CheckDelegate final : public CellDelegate {
    Q_OBJECT

public:
    using CellDelegate::CellDelegate;

protected:
    void paintContent(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

/// The name, what went wrong below it, and the metadata icon.
class NameDelegate final : public CellDelegate {
    Q_OBJECT

public:
    /// Without `icons` no row has one. They must outlive the object.
    explicit NameDelegate(const MetadataIcons* icons, QObject* parent) : CellDelegate(parent), icons_(icons) {}

protected:
    void paintContent(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintIcon(QPainter& painter, const QStyleOptionViewItem& option, const FileItem& file) const;

    const MetadataIcons* icons_;
};

/// A cell's text, as the model tells it.
class TextDelegate final : public CellDelegate {
    Q_OBJECT

public:
    TextDelegate(QPalette::ColorRole role, QObject* parent) : CellDelegate(parent), role_(role) {}

protected:
    void paintContent(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    QPalette::ColorRole role_;
};

class FormatDelegate final : public CellDelegate {
    Q_OBJECT

public:
    using CellDelegate::CellDelegate;

protected:
    void paintContent(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

class StatusDelegate final : public CellDelegate {
    Q_OBJECT

public:
    using CellDelegate::CellDelegate;

protected:
    void paintContent(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

class RevealDelegate final : public CellDelegate {
    Q_OBJECT

public:
    using CellDelegate::CellDelegate;

protected:
    void paintContent(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace sorvik
