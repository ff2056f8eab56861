#include "ui/table/file_table_view.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

#include "ui/look/progress_arc.h"
#include "ui/look/theme.h"
#include "ui/table/cell_delegates.h"
#include "ui/table/column_widths.h"
#include "ui/table/metadata_popover_view.h"
#include "ui/table/row_texts.h"

namespace sorvik {
namespace {

constexpr int headerHeight = 30;
constexpr int rowPadding = 14;                      // above and below a single line of text together
constexpr int errorPadding = 10;                    // where the reason of a failure stands below it
constexpr std::chrono::milliseconds seenDelay{60};  // rows that only fly past are not asked

int plainHeight(const QFont& font) { return std::max(QFontMetrics(font).height() + rowPadding, 30); }

/// For a tool tip: a file's name may look like markup.
QString asPlainText(const QString& text) {
    return text.isEmpty() ? text : QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped());
}

}  // namespace

FileTableView::FileTableView(FileProcessingViewModel& list, FileTableModel& model, ProcessingMode mode,
                             MetadataIcons* icons, QWidget* parent)
    : QTableView(parent), list_(list), model_(model), mode_(mode), icons_(icons) {
    setModel(&model);
    setAccessibleName(QStringLiteral("Files"));
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setAttribute(Qt::WA_InputMethodEnabled, false);
    setUpRows();
    setUpColumns();
    setUpDelegates();
    connectList();
    connectRows();
}

void FileTableView::setUpRows() {
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(plainHeight(font()));
}

void FileTableView::setUpColumns() {
    QHeaderView& header = *horizontalHeader();
    header.setHighlightSections(false);
    header.setFont(styledFont(font(), TextStyle::caption));
    header.setFixedHeight(headerHeight);
    header.setSectionsClickable(false);
    header.setSectionsMovable(false);
    header.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header.setMinimumSectionSize(columnRow(0).minimum);
    header.setSectionResizeMode(columnIndex(Column::check), QHeaderView::Fixed);
    for (int column = 0; column < model_.columnCount(); ++column) {
        setColumnHidden(column, std::ranges::count(columnsOf(mode_), column) == 0);
    }
    connect(&header, &QHeaderView::sectionResized, this, &FileTableView::holdWidth);
    fitColumns();
}

void FileTableView::setUpDelegates() {
    const auto give = [this](Column column, CellDelegate* delegate) {
        setItemDelegateForColumn(columnIndex(column), delegate);
    };
    give(Column::check, new CheckDelegate(this));
    give(Column::name, new NameDelegate(icons_, this));
    give(Column::from, new TextDelegate(QPalette::PlaceholderText, this));
    give(Column::to, new FormatDelegate(this));
    give(Column::size, new TextDelegate(QPalette::Text, this));
    give(Column::saving, new TextDelegate(QPalette::Text, this));
    give(Column::status, new StatusDelegate(this));
    give(Column::file, new RevealDelegate(this));
}

void FileTableView::connectList() {
    selectionObserver_ = list_.selection.addNotifier([this] { takeSelection(); });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &FileTableView::tellSelection);
    seenTimer_.setSingleShot(true);
    seenTimer_.setInterval(seenDelay);
    connect(&seenTimer_, &QTimer::timeout, this, &FileTableView::lookAtSeenRows);
    arcTimer_.setInterval(progressArcInterval);
    connect(&arcTimer_, &QTimer::timeout, this, &FileTableView::turnArcs);
    if (icons_ != nullptr) {
        connect(icons_, &MetadataIcons::answered, this, &FileTableView::redrawName);
    }
}

void FileTableView::connectRows() {
    connect(&model_, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex&, int first, int last) {
        fitRows(first, last);
        seenTimer_.start();
    });
    connect(&model_, &QAbstractItemModel::dataChanged, this, [this](const QModelIndex& first, const QModelIndex& last) {
        fitRows(first.row(), last.row());
        startArcs();
    });
    connect(&model_, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        place_ = {verticalScrollBar()->value(), currentIndex().row(), currentIndex().column()};
    });
    connect(&model_, &QAbstractItemModel::modelReset, this, &FileTableView::returnToPlace);
}

bool FileTableView::hasIcon(const FileItem& item) const { return icons_ != nullptr && MetadataIcons::hasIcon(item); }

/// Rows went: the view stays where it was, and so does the focus, on the row that took the place.
void FileTableView::returnToPlace() {
    fitRows(0, model_.rowCount() - 1);
    verticalScrollBar()->setValue(place_.scroll);
    const int row = std::min(place_.row, model_.rowCount() - 1);
    if (row >= 0) {
        selectionModel()->setCurrentIndex(model_.index(row, place_.column), QItemSelectionModel::NoUpdate);
    }
    seenTimer_.start();
}

// Columns and rows

QByteArray FileTableView::columnState() const { return userSized_ ? horizontalHeader()->saveState() : QByteArray(); }

void FileTableView::restoreColumnState(const QByteArray& state) {
    const QScopedValueRollback guard(fitting_, true);
    userSized_ = !state.isEmpty() && horizontalHeader()->restoreState(state);
    for (int column = 0; column < model_.columnCount(); ++column) {
        setColumnHidden(column, std::ranges::count(columnsOf(mode_), column) == 0);
    }
}

void FileTableView::fitColumns() {
    if (userSized_) {
        return;
    }
    const QScopedValueRollback guard(fitting_, true);
    const std::vector<int> columns = columnsOf(mode_);
    const std::vector<int> widths = fittedWidths(mode_, viewport()->width());
    for (std::size_t each = 0; each < columns.size(); ++each) {
        setColumnWidth(columns[each], widths[each]);
    }
}

void FileTableView::holdWidth(int column, int, int to) {
    if (column == columnIndex(Column::name)) {
        errorHeights_.clear();
        fitRows(0, model_.rowCount() - 1);
    }
    if (fitting_ || isColumnHidden(column)) {
        return;
    }
    userSized_ = true;
    if (const int width = allowedWidth(columnRow(column), to); width != to) {
        setColumnWidth(column, width);
    }
}

/// The reason of a failure is shown whole, as far as three lines go. Few rows differ in it, so that the lines are
/// counted once.
int FileTableView::heightOf(const FileItem& item) {
    if (!item.errorMessage) {
        return plainHeight(font());
    }
    const QRect cell(0, 0, columnWidth(columnIndex(Column::name)), 0);
    const int width = nameTextBox(cell, hasIcon(item)).width();
    const std::pair key(*item.errorMessage, width);
    auto known = errorHeights_.find(key);
    if (known == errorHeights_.end()) {
        known = errorHeights_.insert(key, nameHeight(font(), *item.errorMessage, width) + errorPadding);
    }
    return *known;
}

void FileTableView::fitRows(int first, int last) {
    for (int row = first; row <= last; ++row) {
        const int height = heightOf(list_.files()[static_cast<std::size_t>(row)]);
        if (verticalHeader()->sectionSize(row) != height) {
            verticalHeader()->resizeSection(row, height);
        }
    }
}

void FileTableView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    fitColumns();
    seenTimer_.start();
}

void FileTableView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        setUpRows();
        errorHeights_.clear();
        fitRows(0, model_.rowCount() - 1);
    }
}

// Rows that are seen

std::pair<int, int> FileTableView::seenRows() const {
    const int first = rowAt(0);
    const int last = rowAt(viewport()->height() - 1);
    if (!isVisible() || first < 0) {
        return {0, -1};
    }
    return {first, last < 0 ? model_.rowCount() - 1 : last};
}

bool FileTableView::isTurning(const FileItem& item) const {
    const bool waitsForIcon = hasIcon(item) && !icons_->answer(item.id);
    return waitsForIcon || statusLook(item, list_.isConverting).kind == StatusLook::Kind::busy;
}

void FileTableView::lookAtSeenRows() {
    const auto [first, last] = seenRows();
    if (icons_ != nullptr) {
        const auto begin = list_.files().begin();
        icons_->show(last < first ? std::vector<FileItem>() : std::vector<FileItem>(begin + first, begin + last + 1));
    }
    startArcs();
}

void FileTableView::startArcs() {
    if (!arcTimer_.isActive()) {
        arcTimer_.start();
    }
}

/// Ends by itself when nothing that is seen turns: a window at rest costs nothing.
void FileTableView::turnArcs() {
    const auto [first, last] = seenRows();
    bool turns = false;
    for (int row = first; row <= last; ++row) {
        if (isTurning(list_.files()[static_cast<std::size_t>(row)])) {
            turns = true;
            update(model_.index(row, columnIndex(Column::name)));
            update(model_.index(row, columnIndex(Column::status)));
        }
    }
    if (!turns) {
        arcTimer_.stop();
    }
}

void FileTableView::redrawName(const QUuid& id) {
    const auto [first, last] = seenRows();
    for (int row = first; row <= last; ++row) {
        if (list_.files()[static_cast<std::size_t>(row)].id == id) {
            update(model_.index(row, columnIndex(Column::name)));
        }
    }
}

void FileTableView::showEvent(QShowEvent* event) {
    QTableView::showEvent(event);
    seenTimer_.start();
}

void FileTableView::hideEvent(QHideEvent* event) {
    QTableView::hideEvent(event);
    lookAtSeenRows();
}

void FileTableView::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    seenTimer_.start();
}

// The highlighted rows

void FileTableView::takeSelection() {
    if (syncingSelection_) {
        return;
    }
    const QScopedValueRollback guard(syncingSelection_, true);
    const QSet<QUuid> ids = list_.selection;
    QItemSelection rows;
    for (int row = 0; !ids.isEmpty() && row < model_.rowCount(); ++row) {
        if (ids.contains(list_.files()[static_cast<std::size_t>(row)].id)) {
            rows.select(model_.index(row, 0), model_.index(row, columnIndex(Column::file)));
        }
    }
    selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
}

void FileTableView::tellSelection() {
    if (syncingSelection_) {
        return;
    }
    const QScopedValueRollback guard(syncingSelection_, true);
    QSet<QUuid> ids;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            ids.insert(list_.files()[static_cast<std::size_t>(row)].id);
        }
    }
    list_.selection = ids;
}

// What the user does

Hotspot FileTableView::hotspotUnder(const QPoint& point) const {
    const QModelIndex index = indexAt(point);
    if (!index.isValid()) {
        return Hotspot::nothing;
    }
    const FileItem& item = fileAt(index);
    return hotspotAt(item, static_cast<Column>(index.column()), hasIcon(item), visualRect(index), point);
}

QString FileTableView::hintUnder(const QPoint& point) const {
    const QModelIndex index = indexAt(point);
    if (!index.isValid()) {
        return {};
    }
    const FileItem& item = fileAt(index);
    const QRect cell = visualRect(index);
    switch (hotspotUnder(point)) {
        case Hotspot::metadata: {
            const auto answer = icons_->answer(item.id);
            return !answer               ? QString()
                   : answer->hasMetadata ? QStringLiteral("View metadata")
                                         : QStringLiteral("No metadata");
        }
        case Hotspot::reveal:
            return QStringLiteral("Show in Finder");
        default:
            break;
    }
    const bool onError = item.errorMessage && point.y() > cell.top() + plainHeight(font()) - rowPadding / 2;
    return index.column() == columnIndex(Column::name) && onError ? *item.errorMessage
                                                                  : index.data(Qt::ToolTipRole).toString();
}

bool FileTableView::viewportEvent(QEvent* event) {
    if (const auto* help = dynamic_cast<QHelpEvent*>(event); help != nullptr && event->type() == QEvent::ToolTip) {
        const QString hint = hintUnder(help->pos());
        QToolTip::showText(help->globalPos(), asPlainText(hint), viewport());
        return true;
    }
    return QTableView::viewportEvent(event);
}

void FileTableView::activateCell(const QModelIndex& index) {
    const FileItem& item = fileAt(index);
    switch (hotspotOf(item, static_cast<Column>(index.column()), hasIcon(item))) {
        case Hotspot::checkBox:
            list_.setChecked(index.row(), !item.isSelected);
            break;
        case Hotspot::metadata:
            showMetadata(index);
            break;
        case Hotspot::picker:
            openPicker(index);
            break;
        case Hotspot::reveal:
            emit revealRequested(item.url);
            break;
        case Hotspot::nothing:
            break;
    }
}

void FileTableView::showMetadata(const QModelIndex& index) {
    const FileItem& item = fileAt(index);
    const auto answer = hasIcon(item) ? icons_->answer(item.id) : std::nullopt;
    if (answer && answer->hasMetadata) {
        const QRect icon = metadataIconBox(visualRect(index.siblingAtColumn(columnIndex(Column::name))));
        auto* popover = new MetadataPopoverView(answer->table, this);
        popover->popUp({viewport()->mapToGlobal(icon.topLeft()), icon.size()});
    }
}

QMenu* FileTableView::makeFormatMenu(const QModelIndex& index) {
    const FileItem& item = fileAt(index);
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("formatMenu"));
    auto* choices = new QActionGroup(menu);
    for (const ImageFormat format : offeredFormats(item)) {
        QAction* choice = menu->addAction(rawValue(format));
        choice->setCheckable(true);
        choice->setChecked(format == shownFormat(item));
        choices->addAction(choice);
        connect(choice, &QAction::triggered, this, [this, id = item.id, format] { list_.setOutputFormat(id, format); });
        if (choice->isChecked()) {
            menu->setActiveAction(choice);
        }
    }
    return menu;
}

void FileTableView::openPicker(const QModelIndex& index) {
    QMenu* menu = makeFormatMenu(index);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QRect box = pickerBox(visualRect(index));
    menu->setMinimumWidth(box.width());
    menu->popup(viewport()->mapToGlobal(box.bottomLeft()));
}

void FileTableView::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? currentIndex() : indexAt(event->pos());
    if (!index.isValid()) {
        return;
    }
    if (!selectionModel()->isSelected(index)) {
        selectRow(index.row());  // the menu removes what is highlighted
    }
    const FileItem& item = fileAt(index);
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("rowMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (mode_ == ProcessingMode::convert && item.inputFormat) {
        QMenu* formats = makeFormatMenu(index);
        formats->setTitle(QStringLiteral("Convert to"));
        menu->addMenu(formats);
        connect(menu, &QObject::destroyed, formats, &QObject::deleteLater);
    }
    const auto answer = hasIcon(item) ? icons_->answer(item.id) : std::nullopt;
    QAction* metadata = menu->addAction(QStringLiteral("View metadata"), this,
                                        [this, at = QPersistentModelIndex(index)] { showMetadata(at); });
    metadata->setEnabled(answer && answer->hasMetadata);
    metadata->setVisible(icons_ != nullptr);
    menu->addAction(QStringLiteral("Show in Finder"), this, [this, url = item.url] { emit revealRequested(url); })
        ->setEnabled(item.inputFormat.has_value());
    menu->addSeparator();
    menu->addAction(QStringLiteral("Remove from List"), this, &FileTableView::deleteRequested)
        ->setEnabled(!list_.isConverting);
    menu->popup(byKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

void FileTableView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            emit deleteRequested();
            return;
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_F4:
            if (event->modifiers() == Qt::NoModifier && currentIndex().isValid()) {
                activateCell(currentIndex());
                return;
            }
            break;
        default:
            break;
    }
    QTableView::keyPressEvent(event);
}

/// A click on something that does a thing of its own leaves the highlighted rows as they are.
void FileTableView::mousePressEvent(QMouseEvent* event) {
    const bool isPlain = event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier;
    if (isPlain && hotspotUnder(event->pos()) != Hotspot::nothing) {
        pressed_ = indexAt(event->pos());
        selectionModel()->setCurrentIndex(pressed_, QItemSelectionModel::NoUpdate);
        event->accept();
        return;
    }
    QTableView::mousePressEvent(event);
}

void FileTableView::mouseReleaseEvent(QMouseEvent* event) {
    if (!pressed_.isValid()) {
        QTableView::mouseReleaseEvent(event);
        return;
    }
    const QModelIndex index = pressed_;
    pressed_ = QPersistentModelIndex();
    if (index == indexAt(event->pos()) && hotspotUnder(event->pos()) != Hotspot::nothing) {
        activateCell(index);
    }
}

void FileTableView::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

}  // namespace sorvik
