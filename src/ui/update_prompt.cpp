#include "ui/update_prompt.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>

#include <utility>

#include "ui/look/house_style.h"
#include "ui/look/theme.h"

namespace sorvik {
namespace {

constexpr int iconSize = 48;

/// A message box without a button for Escape refuses to be closed, and the program could not end below it.
class ClosableBox final : public QMessageBox {
public:
    using QMessageBox::QMessageBox;

protected:
    void closeEvent(QCloseEvent* /*event*/) override { reject(); }
};

}  // namespace

void askForAutomaticUpdates(QWidget& parent, std::function<void(bool automatically)> answered) {
    auto* box = new ClosableBox(&parent);
    box->setObjectName(QStringLiteral("updatePrompt"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(QStringLiteral("Sorvik"));
    box->setText(QStringLiteral("Check for updates automatically?"));
    box->setInformativeText(
        QStringLiteral("Should Sorvik automatically check for updates? You can always check for updates manually from "
                       "the Sorvik menu."));
    box->setIconPixmap(QApplication::windowIcon().pixmap(QSize(iconSize, iconSize), parent.devicePixelRatioF()));
    if (auto* title = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
        setTextStyle(*title, TextStyle::headline);
    }
    // Two equal roles, neither of which Escape could stand for.
    QPushButton* check = box->addButton(QStringLiteral("Check Automatically"), QMessageBox::AcceptRole);
    QPushButton* leave = box->addButton(QStringLiteral("Don't Check"), QMessageBox::ActionRole);
    check->setObjectName(QStringLiteral("checkAutomaticallyButton"));
    leave->setObjectName(QStringLiteral("dontCheckButton"));
    HouseStyle::makePrimary(*check);
    box->setDefaultButton(check);
    QObject::connect(box, &QMessageBox::buttonClicked, box,
                     [answered = std::move(answered), check](const QAbstractButton* button) {
                         answered(button == static_cast<const QAbstractButton*>(check));
                     });
    // The window's own keys do not reach past a question that stands over it.
    const auto* quit = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), box);
    QObject::connect(quit, &QShortcut::activated, &parent, [box, &parent] {
        box->close();
        parent.close();
    });
    box->open();
}

}  // namespace sorvik
