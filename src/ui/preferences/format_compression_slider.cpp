#include "ui/preferences/format_compression_slider.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/preferences/preferences_page.h"

namespace sorvik {
namespace {

constexpr int valueWidth = 40;
constexpr int largeStep = 5;
constexpr int smallStep = 1;
constexpr int largeStepsAbove = 10;

}  // namespace

FormatCompressionSlider::FormatCompressionSlider(const QString& title, QProperty<double>& value, Range range,
                                                 QString unit, const QString& description, QWidget* parent)
    : QWidget(parent),
      value_(value),
      range_(range),
      step_(range.upper > largeStepsAbove ? largeStep : smallStep),
      unit_(std::move(unit)),
      title_(new QLabel(title + u':')),
      slider_(new QSlider(Qt::Horizontal)),
      valueLabel_(new QLabel) {
    slider_->setRange(range.lower, range.upper);
    slider_->setSingleStep(step_);
    slider_->setPageStep(step_);
    leaveWheelToPage(*slider_);
    slider_->setAccessibleName(title);
    slider_->setAccessibleDescription(description);
    layOut(description);
    showValue();
    connectSlider();
    observer_ = value_.addNotifier([this] { showValue(); });
}

int FormatCompressionSlider::titleWidth() const { return title_->sizeHint().width(); }

void FormatCompressionSlider::setTitleWidth(int width) { title_->setMinimumWidth(width); }

void FormatCompressionSlider::layOut(const QString& description) {
    title_->setBuddy(slider_);
    valueLabel_->setObjectName(QStringLiteral("sliderValue"));
    valueLabel_->setFixedWidth(valueWidth);
    valueLabel_->setAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
    auto* row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(title_);
    row->addWidget(slider_, 1);
    row->addWidget(valueLabel_);
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(0);
    stack->addLayout(row);
    stack->addWidget(makeCaption(description));
}

void FormatCompressionSlider::connectSlider() {
    // Keys and the mouse: the slider asks where to go before it goes there.
    connect(slider_, &QSlider::actionTriggered, this, [this](int action) {
        const int wanted = target(action);
        slider_->setSliderPosition(wanted);
        value_ = wanted;
    });
    // Everyone else, such as a screen reader.
    connect(slider_, &QSlider::valueChanged, this, [this] { value_ = target(QAbstractSlider::SliderMove); });
}

int FormatCompressionSlider::target(int action) const {
    const auto onGrid = [this](double steps) {
        return static_cast<int>(std::clamp(range_.lower + steps * step_, range_.lower * 1.0, range_.upper * 1.0));
    };
    const double steps = (value_ - range_.lower) / step_;
    switch (action) {
        case QAbstractSlider::SliderSingleStepAdd:
        case QAbstractSlider::SliderPageStepAdd:
            return onGrid(std::floor(steps) + 1);
        case QAbstractSlider::SliderSingleStepSub:
        case QAbstractSlider::SliderPageStepSub:
            return onGrid(std::ceil(steps) - 1);
        default:
            return onGrid(std::round((slider_->sliderPosition() - range_.lower) * 1.0 / step_));
    }
}

void FormatCompressionSlider::showValue() {
    valueLabel_->setText(QString::number(std::round(value_), 'f', 0) + unit_);
    const QSignalBlocker blocker(slider_);
    slider_->setValue(static_cast<int>(std::clamp(std::round(value_), range_.lower * 1.0, range_.upper * 1.0)));
}

}  // namespace sorvik
