#include "core/app_settings.h"

#include <QThreadPool>

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <type_traits>
#include <utility>

namespace sorvik {
namespace {

using namespace std::chrono_literals;

constexpr auto debounceTime = 500ms;
constexpr int updateCheckInterval = 86400;  // seconds
constexpr int utilityPriority = -1;         // behind the work of a batch

constexpr auto automaticUpdateKey = "SUEnableAutomaticChecks";
constexpr auto updateIntervalKey = "SUScheduledCheckInterval";
constexpr auto interfaceStyleKey = "AppleInterfaceStyle";

constexpr std::array processingModes{"convert", "compress"};
constexpr std::array appearanceModes{"system", "light", "dark"};

template <typename T>
using NamedProperty = std::pair<const char*, QProperty<T> AppSettings::*>;

constexpr std::array booleans{
    NamedProperty<bool>{"removeMetadata", &AppSettings::removeMetadata},
    NamedProperty<bool>{"convertCompressionEnabled", &AppSettings::convertCompressionEnabled},
    NamedProperty<bool>{"compressionEnabled", &AppSettings::compressionEnabled},
    NamedProperty<bool>{"hasShownUpdatePreferencesDialog", &AppSettings::hasShownUpdatePreferencesDialog},
    NamedProperty<bool>{"autoCompressionEnabled", &AppSettings::autoCompressionEnabled},
};

constexpr std::array texts{
    NamedProperty<QString>{"outputPrefix", &AppSettings::outputPrefix},
    NamedProperty<QString>{"outputSuffix", &AppSettings::outputSuffix},
    NamedProperty<QString>{"compressionPrefix", &AppSettings::compressionPrefix},
    NamedProperty<QString>{"compressionSuffix", &AppSettings::compressionSuffix},
};

// A stored 0 of these reads as the default.
constexpr std::array olderQualities{
    NamedProperty<double>{"jpegQuality", &AppSettings::jpegQuality},
    NamedProperty<double>{"pngQuality", &AppSettings::pngQuality},
    NamedProperty<double>{"gifQuality", &AppSettings::gifQuality},
};

struct RecipeRow {
    const char* key;
    QProperty<double> AppSettings::*property;
    double defaultValue;
};

constexpr std::array recipeValues{
    RecipeRow{"jpegCompressionQuality", &AppSettings::jpegCompressionQuality, 85},
    RecipeRow{"webpCompressionQuality", &AppSettings::webpCompressionQuality, 85},
    RecipeRow{"pngCompressionLevel", &AppSettings::pngCompressionLevel, 9},
    RecipeRow{"gifCompressionLevel", &AppSettings::gifCompressionLevel, 7},
    RecipeRow{"tiffCompressionQuality", &AppSettings::tiffCompressionQuality, 85},
    RecipeRow{"heicCompressionQuality", &AppSettings::heicCompressionQuality, 85},
    RecipeRow{"avifCompressionQuality", &AppSettings::avifCompressionQuality, 85},
    RecipeRow{"pdfCompressionQuality", &AppSettings::pdfCompressionQuality, 85},
};

template <typename Mode, std::size_t count>
std::optional<Mode> modeNamed(const std::array<const char*, count>& names, const QString& name) {
    const auto* found = std::ranges::find_if(names, [&](const char* each) { return name == QLatin1StringView(each); });
    return found == names.end() ? std::nullopt : std::optional(static_cast<Mode>(found - names.begin()));
}

template <typename T>
QVariant stored(const T& value) {
    if constexpr (std::is_enum_v<T>) {
        return rawValue(value);
    } else {
        return value;
    }
}

QString keyText(const char* key) { return QString::fromLatin1(key); }

}  // namespace

QString rawValue(ProcessingMode mode) { return keyText(processingModes[static_cast<std::size_t>(mode)]); }
QString rawValue(AppearanceMode mode) { return keyText(appearanceModes[static_cast<std::size_t>(mode)]); }

AppSettings::AppSettings(std::shared_ptr<DefaultsStore> store, QObject* parent)
    : QObject(parent), store_(std::move(store)) {
    load();
    applyAppearance();
    keepAll();
}

void AppSettings::load() {
    for (const auto& [key, property] : booleans) {
        this->*property = store_->boolean(keyText(key));
    }
    for (const auto& [key, property] : texts) {
        this->*property = store_->text(keyText(key));
    }
    for (const auto& [key, property] : olderQualities) {
        if (const double value = store_->number(keyText(key)); value != 0) {
            this->*property = value;
        }
    }
    for (const RecipeRow& row : recipeValues) {
        if (store_->contains(keyText(row.key))) {
            this->*row.property = store_->number(keyText(row.key));
        }
    }
    automaticUpdateCheck = store_->boolean(keyText(automaticUpdateKey));
    if (const auto mode = modeNamed<AppearanceMode>(appearanceModes, store_->text(QStringLiteral("appearanceMode")))) {
        appearanceMode = *mode;
    }
    if (const auto mode = modeNamed<ProcessingMode>(processingModes, store_->text(QStringLiteral("processingMode")))) {
        processingMode = *mode;
    }
}

void AppSettings::keepAll() {
    for (const auto& [key, property] : booleans) {
        keepAtOnce(this->*property, key);
    }
    for (const auto& [key, property] : texts) {
        keepDebounced(this->*property, key);
    }
    for (const auto& [key, property] : olderQualities) {
        keepDebounced(this->*property, key);
    }
    for (const RecipeRow& row : recipeValues) {
        keepDebounced(this->*row.property, row.key);
    }
    keepAtOnce(processingMode, "processingMode");
    keepAtOnce(appearanceMode, "appearanceMode");
    observers_.push_back(appearanceMode.addNotifier([this] { applyAppearance(); }));
    observers_.push_back(automaticUpdateCheck.addNotifier([this] { storeUpdateCheck(); }));
}

template <typename T>
void AppSettings::keepAtOnce(QProperty<T>& property, const char* key) {
    observers_.push_back(
        property.addNotifier([this, &property, key] { store_->setValue(keyText(key), stored(property.value())); }));
}

template <typename T>
void AppSettings::keepDebounced(QProperty<T>& property, const char* key) {
    auto* timer = new QTimer(this);
    timer->setSingleShot(true);
    timer->setInterval(debounceTime);
    // The write holds the store and the value, not this object, which may be gone by then.
    connect(timer, &QTimer::timeout, this, [this, &property, key] {
        QThreadPool::globalInstance()->start(
            [store = store_, value = stored(property.value()), key] { store->setValue(keyText(key), value); },
            utilityPriority);
    });
    observers_.push_back(property.addNotifier([timer] { timer->start(); }));
}

void AppSettings::resetCompressionDefaults() {
    for (const RecipeRow& row : recipeValues) {
        this->*row.property = row.defaultValue;
    }
}

void AppSettings::storeUpdateCheck() {
    store_->setValue(keyText(automaticUpdateKey), automaticUpdateCheck.value());
    store_->setValue(keyText(updateIntervalKey), updateCheckInterval);
}

void AppSettings::setSystemDarkSource(std::function<bool()> isDark) {
    systemIsDark_ = std::move(isDark);
    applyAppearance();
}

void AppSettings::applyAppearance() {
    const auto systemIsDark = [this] {
        return systemIsDark_ ? systemIsDark_() : store_->text(keyText(interfaceStyleKey)) == QLatin1StringView("Dark");
    };
    const AppearanceMode mode = appearanceMode;
    dark_ = mode == AppearanceMode::dark || (mode == AppearanceMode::system && systemIsDark());
    emit appearanceApplied(dark_);
}

void AppSettings::systemAppearanceChanged() {
    if (appearanceMode == AppearanceMode::system) {
        applyAppearance();
    }
}

}  // namespace sorvik
