#pragma once

#include <QProperty>

#include "core/app_settings.h"
#include "ui/preferences/preferences_page.h"

namespace sorvik {

/// The tab "General": the choice of the appearance.
class GeneralTabView final : public PreferencesPage {
    Q_OBJECT

public:
    /// `settings` must outlive the view.
    explicit GeneralTabView(AppSettings& settings, QWidget* parent = nullptr);

private:
    [[nodiscard]] QComboBox* makePicker();

    AppSettings& settings_;
    QPropertyNotifier observer_;
};

}  // namespace sorvik
