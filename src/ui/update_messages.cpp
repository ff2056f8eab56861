#include "ui/update_messages.h"

#include <QDesktopServices>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace sorvik {
namespace {

constexpr qsizetype mostLines = 12;
constexpr qsizetype mostCharacters = 600;

/// What fits into a box that must not outgrow the screen.
QString shortened(const QString& text) {
    QString kept = text.left(mostCharacters).split(u'\n').mid(0, mostLines).join(u'\n');
    return kept.size() < text.size() ? kept + u'…' : kept;
}

/// `text` comes from the network: never markup, never a link.
QMessageBox* makeBox(QWidget& window, const QString& title, const QString& text) {
    auto* box = new QMessageBox(QMessageBox::NoIcon, QStringLiteral("Sorvik"), title, QMessageBox::NoButton, &window);
    box->setObjectName(QStringLiteral("updateMessage"));
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(shortened(text));
    if (auto* informative = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
        informative->setTextFormat(Qt::PlainText);
        informative->setOpenExternalLinks(false);
    }
    if (shortened(text) != text) {
        box->setDetailedText(text);
    }
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

}  // namespace

UpdateMessages::UpdateMessages(Updater& updater, QWidget& window, QObject* parent)
    : QObject(parent), updater_(updater), window_(window) {
    connect(&updater, &Updater::updateFound, this,
            [this](const QString& version, const QUrl&, const QString& notes) { tellFound(version, notes); });
    connect(&updater, &Updater::updateNotFound, this, [this](bool manual) {
        if (manual) {
            tell(QStringLiteral("Sorvik is up to date."), {});
        }
    });
    connect(&updater, &Updater::checkFailed, this, [this](const QString& error, bool manual) {
        if (manual) {
            tell(QStringLiteral("The check for updates failed."), error);
        }
    });
}

/// One message at a time: a later one takes the place of the one before.
void UpdateMessages::tell(const QString& title, const QString& text) {
    delete shown_;
    QMessageBox* box = makeBox(window_, title, text);
    box->addButton(QMessageBox::Ok);
    shown_ = box;
    box->open();
}

void UpdateMessages::tellFound(const QString& version, const QString& notes) {
    delete shown_;
    QMessageBox* box = makeBox(window_, QStringLiteral("Sorvik %1 is available.").arg(version), notes);
    QPushButton* get = box->addButton(QStringLiteral("Open Download Page"), QMessageBox::AcceptRole);
    box->addButton(QStringLiteral("Later"), QMessageBox::RejectRole);
    connect(get, &QPushButton::clicked, this, [this] {
        if (const QUrl page = updater_.installFoundUpdate(); !page.isEmpty()) {
            QDesktopServices::openUrl(page);
        }
    });
    shown_ = box;
    box->open();
}

}  // namespace sorvik
