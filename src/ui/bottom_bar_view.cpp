#include "ui/bottom_bar_view.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>

#include "ui/look/house_style.h"
#include "ui/look/progress_arc.h"
#include "ui/look/symbols.h"
#include "ui/look/theme.h"

namespace sorvik {
namespace {

constexpr int barMargin = 12;
constexpr int stripSpacing = 8;
constexpr int arcSide = 14;
constexpr int arcCanvas = 16;
constexpr QSize progressSize(160, 6);
constexpr int stripHeight = 40;
constexpr int primaryWidth = 116;

class NoteIcon final : public QWidget {
public:
    explicit NoteIcon(QWidget* parent) : QWidget(parent) { setFixedSize(arcCanvas, arcCanvas); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        drawSymbol(painter, Symbol::add, rect(), palette().color(QPalette::PlaceholderText));
    }
};

QIcon arcIcon(const QWidget& widget) {
    const qreal scale = widget.devicePixelRatioF();
    QPixmap pixmap(QSize(arcCanvas, arcCanvas) * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    drawProgressArc(painter, QRectF(1, 1, arcSide, arcSide),
                    widget.palette().color(QPalette::Disabled, QPalette::ButtonText));
    painter.end();
    QIcon icon;
    icon.addPixmap(pixmap, QIcon::Normal);
    icon.addPixmap(pixmap, QIcon::Disabled);
    return icon;
}

}  // namespace

BottomBarView::BottomBarView(QWidget* parent)
    : QWidget(parent),
      selection_(new SelectionStrip(this)),
      readyLabel_(new QLabel(this)),
      messageLabel_(new QLabel(this)),
      progressLabel_(new QLabel(this)),
      progressBar_(new QProgressBar(this)),
      stop_(new QPushButton(symbolIcon(Symbol::stop), QStringLiteral("Stop"), this)),
      again_(new QPushButton(symbolIcon(Symbol::again), QStringLiteral("Again"), this)),
      primary_(new QPushButton(this)),
      preferences_(new QToolButton(this)) {
    setObjectName(QStringLiteral("bottomBar"));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Window);
    nameControls();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(barMargin, barMargin - 2, barMargin, barMargin - 2);
    column->setSpacing(stripSpacing);
    column->addWidget(selection_);
    column->addWidget(makeMainStrip());
    connect(stop_, &QPushButton::clicked, this, &BottomBarView::stopRequested);
    connect(again_, &QPushButton::clicked, this, &BottomBarView::resetRequested);
    connect(primary_, &QPushButton::clicked, this, &BottomBarView::convertRequested);
    connect(preferences_, &QToolButton::clicked, this, &BottomBarView::preferencesRequested);
    arcTimer_.setInterval(progressArcInterval);
    connect(&arcTimer_, &QTimer::timeout, this, &BottomBarView::turnArc);
    show(BottomBarState());
}

void BottomBarView::nameControls() {
    readyLabel_->setObjectName(QStringLiteral("readyLabel"));
    messageLabel_->setObjectName(QStringLiteral("completionLabel"));
    progressLabel_->setObjectName(QStringLiteral("progressLabel"));
    progressBar_->setObjectName(QStringLiteral("progressBar"));
    progressBar_->setAccessibleName(QStringLiteral("Progress"));
    stop_->setObjectName(QStringLiteral("stopButton"));
    again_->setObjectName(QStringLiteral("againButton"));
    primary_->setObjectName(QStringLiteral("primaryButton"));
    preferences_->setObjectName(QStringLiteral("preferencesButton"));
    preferences_->setAccessibleName(QStringLiteral("Preferences"));
    preferences_->setToolTip(QStringLiteral("Preferences"));
    preferences_->setIcon(symbolIcon(Symbol::preferences));
    preferences_->setAutoRaise(true);
    preferences_->setFocusPolicy(Qt::StrongFocus);
    HouseStyle::makePrimary(*primary_);
    primary_->setMinimumWidth(primaryWidth);
}

QWidget* BottomBarView::makeReadyNote() {
    auto* note = new QWidget(this);
    setSecondary(*readyLabel_);
    setTextStyle(*messageLabel_, TextStyle::caption);
    messageLabel_->setTextFormat(Qt::PlainText);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addWidget(readyLabel_);
    texts->addWidget(messageLabel_);
    texts->addWidget(makeProgressNote());
    auto* row = new QHBoxLayout(note);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(new NoteIcon(note));
    row->addLayout(texts);
    return note;
}

/// Stands where the message of the last batch stood, so that the bar keeps its height.
QWidget* BottomBarView::makeProgressNote() {
    progress_ = new QWidget(this);
    setTextStyle(*progressLabel_, TextStyle::caption);
    progressBar_->setTextVisible(false);
    progressBar_->setFixedSize(progressSize);
    auto* row = new QHBoxLayout(progress_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(progressBar_, 0, Qt::AlignVCenter);
    row->addWidget(progressLabel_);
    row->addStretch();
    return progress_;
}

QWidget* BottomBarView::makeMainStrip() {
    auto* strip = new QWidget(this);
    strip->setMinimumHeight(stripHeight);
    ready_ = makeReadyNote();
    auto* row = new QHBoxLayout(strip);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(stripSpacing);
    row->addWidget(ready_);
    row->addStretch();
    row->addWidget(stop_);
    row->addWidget(again_);
    row->addWidget(primary_);
    row->addWidget(preferences_);
    return strip;
}

void BottomBarView::show(const BottomBarState& state) {
    if (shown_ == state) {
        return;
    }
    shown_ = state;
    selection_->show(state);
    const bool isIdle = !state.isConverting && state.filesCount > 0;
    ready_->setVisible(state.filesCount > 0);
    readyLabel_->setText(readyText(state.filesCount));
    messageLabel_->setText(state.message);
    messageLabel_->setVisible(isIdle && !state.message.isEmpty());
    progress_->setVisible(state.isConverting && state.totalCount > 0);
    stop_->setVisible(state.isConverting);
    progressBar_->setRange(0, std::max(state.totalCount, 1));
    progressBar_->setValue(state.completedCount);
    progressLabel_->setText(progressText(state));
    again_->setEnabled(isIdle);
    primary_->setEnabled(isIdle);
    primary_->setText(primaryText(state));
    if (state.isConverting) {
        arcTimer_.start();
        turnArc();
    } else {
        arcTimer_.stop();
        primary_->setIcon({});
    }
}

void BottomBarView::turnArc() { primary_->setIcon(arcIcon(*this)); }

void BottomBarView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, width(), 1), lineColour(palette()));
}

}  // namespace sorvik
