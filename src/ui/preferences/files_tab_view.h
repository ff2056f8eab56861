#pragma once

#include <QProperty>

#include <vector>

#include "core/app_settings.h"
#include "ui/preferences/preferences_page.h"

class QLayout;

namespace sorvik {

/// The tab "Files": what is done with files, and how strongly each format is compressed.
class FilesTabView final : public PreferencesPage {
    Q_OBJECT

public:
    /// `settings` must outlive the view.
    explicit FilesTabView(AppSettings& settings, QWidget* parent = nullptr);

private:
    void addSwitches();
    void addCompressionHeading();
    void addSliders();

    AppSettings& settings_;
    std::vector<QPropertyNotifier> observers_;
};

}  // namespace sorvik
