#pragma once

#include <QPointer>
#include <QString>
#include <QUrl>
#include <QWidget>

class QLabel;

namespace sorvik {

/// Who makes the program and where it is at home; configuration. What is empty is left out, a name without its
/// address is plain text.
struct ProductLinks {
    QString makerName;
    QUrl makerUrl;
    QUrl websiteUrl;
};

/// What the about window shows: the program's icon, the version and the credit.
class AboutView final : public QWidget {
    Q_OBJECT

public:
    AboutView(const QString& version, ProductLinks links, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] QLabel* makeIcon() const;
    [[nodiscard]] static QLabel* makeVersion(const QString& version);
    void setUpCredit();
    [[nodiscard]] QString creditText() const;

    const ProductLinks links_;
    QLabel* credit_;
};

/// The one about window of a run.
class AboutWindowController {
public:
    /// An empty version is shown as "1.0.0".
    AboutWindowController(QString version, ProductLinks links);
    ~AboutWindowController();
    AboutWindowController(const AboutWindowController&) = delete;
    AboutWindowController& operator=(const AboutWindowController&) = delete;

    /// Makes the window on the first call, in the middle of the screen on which `near` lies; brings it to the front
    /// on all.
    void show(const QWidget* near = nullptr);

    /// Null before the first show().
    [[nodiscard]] QWidget* window() const { return window_; }

private:
    const QString version_;
    const ProductLinks links_;
    QPointer<QWidget> window_;
};

}  // namespace sorvik
