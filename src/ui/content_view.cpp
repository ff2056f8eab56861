#include "ui/content_view.h"

#include <QVBoxLayout>

#include <algorithm>

#include "ui/look/symbols.h"

namespace sorvik {
namespace {

constexpr std::array columnKeys{"convertTableColumns", "compressTableColumns"};
constexpr std::array tableNames{"convertTable", "compressTable"};

std::size_t placeOf(ProcessingMode mode) { return static_cast<std::size_t>(mode); }
QString keyOf(std::size_t page) { return QString::fromLatin1(columnKeys.at(page)); }

}  // namespace

ContentView::ContentView(BatchEngine& engine, AppSettings& settings, QWidget* parent)
    : QWidget(parent),
      settings_(settings),
      list_(std::make_unique<FileProcessingViewModel>(engine)),
      model_(new FileTableModel(*list_, this)),
      icons_(new MetadataIcons(this)),
      tabs_(new QTabWidget(this)),
      bar_(new BottomBarView(this)) {
    addTabs();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(tabs_, 1);
    column->addWidget(bar_);
    connectBar();
    connectList();
    connectSettings();
    refresh();
}

ContentView::~ContentView() {
    keepColumns();
    list_->finish();  // while the views that follow its end still stand
}

void ContentView::addTabs() {
    tabs_->setObjectName(QStringLiteral("modeTabs"));
    tabs_->setDocumentMode(true);
    tabs_->setAccessibleName(QStringLiteral("Mode"));
    pages_[placeOf(ProcessingMode::convert)] = makePage(ProcessingMode::convert, icons_);
    pages_[placeOf(ProcessingMode::compress)] = makePage(ProcessingMode::compress, nullptr);
    tabs_->addTab(pages_[0].stack, symbolIcon(Symbol::convert), QStringLiteral("Convert"));
    tabs_->addTab(pages_[1].stack, symbolIcon(Symbol::compress), QStringLiteral("Compress"));
    tabs_->setCurrentIndex(static_cast<int>(settings_.processingMode.value()));
}

ContentView::Page ContentView::makePage(ProcessingMode mode, MetadataIcons* icons) {
    Page page;
    page.stack = new QStackedWidget;
    page.dropZone = new DropZoneView;
    page.table = new FileTableView(*list_, *model_, mode, icons);
    page.table->setObjectName(QString::fromLatin1(tableNames.at(placeOf(mode))));
    page.table->restoreColumnState(settings_.store().value(keyOf(placeOf(mode))).toByteArray());
    page.stack->addWidget(page.dropZone);
    page.stack->addWidget(page.table);
    connect(page.table, &FileTableView::deleteRequested, list_.get(), &FileProcessingViewModel::deleteSelected);
    connect(page.table, &FileTableView::revealRequested, this, &ContentView::revealRequested);
    return page;
}

FileTableView& ContentView::table() const { return *pages_[placeOf(settings_.processingMode)].table; }

void ContentView::connectBar() {
    connect(bar_, &BottomBarView::resetRequested, list_.get(), &FileProcessingViewModel::resetAll);
    connect(bar_, &BottomBarView::convertRequested, this, &ContentView::start);
    connect(bar_, &BottomBarView::stopRequested, list_.get(), &FileProcessingViewModel::cancel);
    connect(bar_, &BottomBarView::preferencesRequested, this, &ContentView::preferencesRequested);
    SelectionStrip& strip = bar_->selectionStrip();
    connect(&strip, &SelectionStrip::selectAllRequested, list_.get(),
            &FileProcessingViewModel::checkAllOfSelectedFormat);
    connect(&strip, &SelectionStrip::outputFormatChosen, this, [this](std::optional<ImageFormat> format) {
        bulkOutputFormat_ = format;
        refresh();
    });
    connect(&strip, &SelectionStrip::updateAllRequested, this, [this] {
        if (const auto format = std::exchange(bulkOutputFormat_, std::nullopt)) {
            list_->updateChecked(*format);
        }
    });
    connect(&strip, &SelectionStrip::clearRequested, this, [this] {
        bulkOutputFormat_.reset();
        list_->clearChecked();
    });
}

void ContentView::connectList() {
    refreshTimer_.setSingleShot(true);
    connect(&refreshTimer_, &QTimer::timeout, this, &ContentView::refresh);
    const auto refreshes = [this] { refreshLater(); };
    connect(list_.get(), &FileProcessingViewModel::filesInserted, this, refreshes);
    connect(list_.get(), &FileProcessingViewModel::selectionStateChanged, this, &ContentView::checkBulkFormat);
    connect(list_.get(), &FileProcessingViewModel::filesReset, this, &ContentView::forgetRows);
    observers_.push_back(list_->isConverting.addNotifier(refreshes));
    observers_.push_back(list_->completedCount.addNotifier(refreshes));
    observers_.push_back(list_->totalCount.addNotifier(refreshes));
    observers_.push_back(list_->batchCompletionMessage.addNotifier(refreshes));
}

void ContentView::connectSettings() {
    connect(tabs_, &QTabWidget::currentChanged, this,
            [this](int index) { settings_.processingMode = static_cast<ProcessingMode>(index); });
    const auto giveSettings = [this] { list_->setSettings(&settings_); };
    observers_.push_back(settings_.outputPrefix.addNotifier(giveSettings));
    observers_.push_back(settings_.outputSuffix.addNotifier(giveSettings));
    observers_.push_back(settings_.processingMode.addNotifier([this] { changeMode(); }));
}

/// A choice that the rows checked now are not offered would be applied unseen.
void ContentView::checkBulkFormat() {
    const auto& offered = list_->commonOutputFormats();
    if (bulkOutputFormat_ && std::ranges::find(offered, *bulkOutputFormat_) == offered.end()) {
        bulkOutputFormat_.reset();
    }
    refreshLater();
}

void ContentView::appear() { list_->setSettings(&settings_); }

void ContentView::start() {
    if (settings_.processingMode.value() == ProcessingMode::convert) {
        list_->startConversion(settings_.removeMetadata);
    } else {
        list_->startCompression(settings_.removeMetadata);
    }
}

void ContentView::changeMode() {
    tabs_->setCurrentIndex(static_cast<int>(settings_.processingMode.value()));
    list_->clearAll();
    list_->refreshSelectionState();
    bulkOutputFormat_.reset();
    refresh();
}

void ContentView::forgetRows() {
    QSet<QUuid> standing;
    for (const FileItem& item : list_->files()) {
        standing.insert(item.id);
    }
    icons_->keepOnly(standing);
    refreshLater();
}

void ContentView::setInviting(bool inviting) {
    for (const Page& page : pages_) {
        page.dropZone->setInviting(inviting);
    }
}

/// Several changes in one turn of the event loop cost one look.
void ContentView::refreshLater() {
    if (!refreshTimer_.isActive()) {
        refreshTimer_.start(0);
    }
}

void ContentView::refresh() {
    const BottomBarState state = bottomBarState(*list_, settings_, bulkOutputFormat_);
    bar_->show(state);
    for (const Page& page : pages_) {
        QWidget* wanted = state.filesCount > 0 ? static_cast<QWidget*>(page.table) : page.dropZone;
        page.stack->setCurrentWidget(wanted);
    }
}

void ContentView::keepColumns() {
    for (std::size_t page = 0; page < pages_.size(); ++page) {
        if (const QByteArray state = pages_.at(page).table->columnState(); !state.isEmpty()) {
            settings_.store().setValue(keyOf(page), state);
        }
    }
}

}  // namespace sorvik
