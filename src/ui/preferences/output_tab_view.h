#pragma once

#include <QProperty>

#include <vector>

#include "core/app_settings.h"
#include "core/format_mappings.h"
#include "ui/preferences/preferences_page.h"

namespace sorvik {

class DefaultFormatConversionView;

/// The tab "Output": how results are named, and the default targets, which are read whenever the tab appears.
class OutputTabView final : public PreferencesPage {
    Q_OBJECT

public:
    /// `settings` must outlive the view.
    explicit OutputTabView(AppSettings& settings, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addNaming();
    void addSlashHint();
    void addExamples();
    [[nodiscard]] bool anyAffixHoldsSlash() const;

    AppSettings& settings_;
    FormatMappings formatMappings_;
    DefaultFormatConversionView* conversions_;
    std::vector<QPropertyNotifier> observers_;
};

}  // namespace sorvik
