#include "ui/about_window.h"

#include <QApplication>
#include <QDesktopServices>
#include <QEvent>
#include <QIcon>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

#include <utility>

#include "ui/look/close_keys.h"
#include "ui/look/front.h"
#include "ui/look/theme.h"

namespace sorvik {
namespace {

constexpr QSize windowSize(300, 260);
constexpr int iconSize = 64;
constexpr int spacing = 20;
constexpr int textSize = 13;
constexpr int creditWidth = 360;  // at most
constexpr int sideMargin = 16;

QFont systemFont() {
    QFont font = QApplication::font();
    font.setPixelSize(textSize);
    return font;
}

QString link(const QString& text, const QUrl& target, const QColor& colour) {
    if (!target.isValid()) {
        return text.toHtmlEscaped();
    }
    return QStringLiteral("<a href=\"%1\" style=\"color: %2\">%3</a>")
        .arg(QString::fromUtf8(target.toEncoded()).toHtmlEscaped(), colour.name(), text.toHtmlEscaped());
}

}  // namespace

AboutView::AboutView(const QString& version, ProductLinks links, QWidget* parent)
    : QWidget(parent), links_(std::move(links)), credit_(new QLabel) {
    setFixedSize(windowSize);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    setUpCredit();
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(sideMargin, 0, sideMargin, 0);
    stack->setSpacing(spacing);
    stack->addStretch();
    stack->addWidget(makeIcon(), 0, Qt::AlignHCenter);
    stack->addWidget(makeVersion(version), 0, Qt::AlignHCenter);
    stack->addWidget(credit_);
    stack->addStretch();
}

QLabel* AboutView::makeIcon() const {
    auto* icon = new QLabel;
    icon->setObjectName(QStringLiteral("aboutIcon"));
    icon->setFixedSize(iconSize, iconSize);
    icon->setPixmap(QApplication::windowIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    return icon;
}

QLabel* AboutView::makeVersion(const QString& version) {
    auto* label = new QLabel(QStringLiteral("Version ") + (version.isEmpty() ? QStringLiteral("1.0.0") : version));
    label->setObjectName(QStringLiteral("versionText"));
    label->setTextFormat(Qt::PlainText);
    label->setFont(systemFont());
    setSecondary(*label);
    return label;
}

void AboutView::setUpCredit() {
    credit_->setObjectName(QStringLiteral("creditText"));
    credit_->setFont(systemFont());
    credit_->setTextFormat(Qt::RichText);
    credit_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    credit_->setWordWrap(true);
    credit_->setAlignment(Qt::AlignCenter);
    credit_->setMaximumWidth(creditWidth);
    credit_->setText(creditText());
    connect(credit_, &QLabel::linkActivated, this,
            [](const QString& target) { QDesktopServices::openUrl(QUrl(target)); });
}

QString AboutView::creditText() const {
    const QColor colour = palette().color(QPalette::Link);
    QString text;
    if (!links_.makerName.isEmpty()) {
        text = QStringLiteral("Sorvik is created by %1. ").arg(link(links_.makerName, links_.makerUrl, colour));
    }
    return text + QStringLiteral("For any inquiries, feedback, or assistance, please go to %1.")
                      .arg(link(QStringLiteral("Sorvik's website"), links_.websiteUrl, colour));
}

/// Rich text keeps the colours that it was made with.
void AboutView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        credit_->setText(creditText());
    }
}

AboutWindowController::AboutWindowController(QString version, ProductLinks links)
    : version_(std::move(version)), links_(std::move(links)) {}

AboutWindowController::~AboutWindowController() { delete window_; }

void AboutWindowController::show(const QWidget* near) {
    if (window_ == nullptr) {
        window_ = new AboutView(version_, links_);
        window_->setObjectName(QStringLiteral("aboutWindow"));
        window_->setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
        window_->setWindowTitle(QStringLiteral("About Sorvik"));
        closeByKeys(*window_);
        const QScreen* screen = near == nullptr ? QApplication::primaryScreen() : near->screen();
        window_->move(screen->availableGeometry().center() - window_->rect().center());
    }
    bringToFront(*window_);
}

}  // namespace sorvik
