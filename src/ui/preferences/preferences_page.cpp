#include "ui/preferences/preferences_page.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/look/theme.h"

namespace sorvik {
namespace {

class WheelFilter final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() != QEvent::Wheel) {
            return false;
        }
        event->ignore();  // and so it goes on to the parent
        return true;
    }
};

}  // namespace

PreferencesPage::PreferencesPage(QWidget* parent) : QScrollArea(parent) {
    auto* content = new QWidget;
    stack_ = new QVBoxLayout(content);
    stack_->setContentsMargins(2, 16, 12, 16);
    stack_->setSpacing(12);
    stack_->setAlignment(Qt::AlignTop);
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
}

QLabel* makeHeadline(const QString& text) {
    auto* label = new QLabel(text);
    setTextStyle(*label, TextStyle::headline);
    return label;
}

QLabel* makeCaption(const QString& text) {
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    setTextStyle(*label, TextStyle::caption);
    setSecondary(*label);
    return label;
}

QFrame* makeDivider() {
    auto* line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    return line;
}

void leaveWheelToPage(QWidget& control) { control.installEventFilter(new WheelFilter(&control)); }

}  // namespace sorvik
