#pragma once

#include <QObject>

#include <memory>

#include "core/app_settings.h"
#include "core/batch_engine.h"
#include "ui/root_view.h"

namespace sorvik {

/// The program's long-lived services, made in a fixed order, and its windows. Main thread.
class SorvikApp final : public QObject {
    Q_OBJECT

public:
    /// Makes the services; a window does not exist before show(). A QApplication must stand.
    explicit SorvikApp(std::shared_ptr<DefaultsStore> store);

    /// Opens the main window, with files as if they were dropped.
    void show(const QList<QUrl>& files);

    [[nodiscard]] RootView& window() { return *window_; }
    [[nodiscard]] AppSettings& settings() { return settings_; }

private:
    void makeWindow();

    AppSettings settings_;
    SystemBatchEngine engine_;
    std::unique_ptr<RootView> window_;
};

}  // namespace sorvik
