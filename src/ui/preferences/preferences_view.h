#pragma once

#include <QWidget>

#include "core/app_settings.h"

namespace sorvik {

/// The preferences window: three tabs of controls, each of which writes through to the settings at once. Closing hides
/// it; the program keeps one and shows it again.
class PreferencesView final : public QWidget {
    Q_OBJECT

public:
    /// `settings` must outlive the window.
    explicit PreferencesView(AppSettings& settings, QWidget* parent = nullptr);
};

}  // namespace sorvik
