#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QSlider>
#include <QTabWidget>
#include <QTest>

#include <atomic>
#include <memory>

#include "core/app_settings.h"
#include "ui/look/theme.h"
#include "ui/preferences/preferences_view.h"

namespace sorvik {

inline QString text(const char* literal) { return QString::fromUtf8(literal); }

/// Counts what is written and removed.
class CountingStore final : public DefaultsStore {
public:
    [[nodiscard]] bool contains(const QString& key) const override { return inner.contains(key); }
    [[nodiscard]] QVariant value(const QString& key) const override { return inner.value(key); }
    void setValue(const QString& key, const QVariant& value) override {
        ++changes;
        inner.setValue(key, value);
    }
    void remove(const QString& key) override {
        ++changes;
        inner.remove(key);
    }

    MemoryDefaultsStore inner;
    std::atomic<int> changes = 0;
};

enum Tab { general, files, output };

/// The window over a store that a test may fill before open().
class PreferencesTest : public testing::Test {
protected:
    PreferencesTest() { applyTheme(false); }

    void open(Tab tab) {
        if (!settings) {
            settings = std::make_unique<AppSettings>(store);
            view = std::make_unique<PreferencesView>(*settings);
        }
        find<QTabWidget>("preferencesTabs").setCurrentIndex(tab);
        view->show();
        view->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(view.get()));
    }

    template <typename Control>
    Control& find(const char* name) {
        auto* found = view->findChild<Control*>(text(name));
        if (found == nullptr) {
            throw std::runtime_error(name);
        }
        return *found;
    }

    template <typename Control>
    Control& focused(const char* name) {
        auto& control = find<Control>(name);
        control.setFocus(Qt::TabFocusReason);
        return control;
    }

    /// What stands beside a slider.
    QString shownValue(const char* slider) {
        return find<QSlider>(slider).parentWidget()->template findChild<QLabel*>(text("sliderValue"))->text();
    }

    std::shared_ptr<CountingStore> store = std::make_shared<CountingStore>();
    std::unique_ptr<AppSettings> settings;
    std::unique_ptr<PreferencesView> view;
};

}  // namespace sorvik
