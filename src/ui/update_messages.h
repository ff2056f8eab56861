#pragma once

#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QWidget>

#include "services/updates/updater.h"

namespace sorvik {

/// Tells the user what a check for updates has found: always when the user asked, else only a newer version.
/// Never waits for an answer.
class UpdateMessages final : public QObject {
    Q_OBJECT

public:
    /// `updater` must outlive the object; the messages stand over `window`.
    UpdateMessages(Updater& updater, QWidget& window, QObject* parent = nullptr);

private:
    void tellFound(const QString& version, const QString& notes);
    void tell(const QString& title, const QString& text);

    Updater& updater_;
    QWidget& window_;
    QPointer<QWidget> shown_;
};

}  // namespace sorvik
