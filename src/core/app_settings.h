#pragma once

#include <QObject>
#include <QProperty>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

#include "platform/defaults_store.h"

namespace sorvik {

/// Which tab is open.
enum class ProcessingMode { convert, compress };

enum class AppearanceMode { system, light, dark };

[[nodiscard]] QString rawValue(ProcessingMode mode);
[[nodiscard]] QString rawValue(AppearanceMode mode);

/// The user's choices, as observable properties, kept in a defaults store. Each property's key is its name,
/// but for `automaticUpdateCheck`. Numbers and texts reach the store half a second after their
/// last change, all others at once. No value is clamped. Main context only.
class AppSettings : public QObject {
    Q_OBJECT

public:
    /// Reads the store; what is absent or unknown there is at its default and is not written back.
    explicit AppSettings(std::shared_ptr<DefaultsStore> store, QObject* parent = nullptr);

    QProperty<bool> removeMetadata{false};
    QProperty<double> jpegQuality{0.8};  ///< the three older qualities are kept and not read by the batches
    QProperty<double> pngQuality{0.7};
    QProperty<double> gifQuality{0.6};
    QProperty<QString> outputPrefix;
    QProperty<QString> outputSuffix;
    QProperty<QString> compressionPrefix;
    QProperty<QString> compressionSuffix;
    QProperty<bool> convertCompressionEnabled{false};
    QProperty<bool> compressionEnabled{false};     ///< kept and not read by the batches
    QProperty<double> jpegCompressionQuality{85};  ///< recipe values: 0 to 100, levels for PNG and GIF
    QProperty<double> webpCompressionQuality{85};
    QProperty<double> pngCompressionLevel{9};
    QProperty<double> gifCompressionLevel{7};
    QProperty<double> tiffCompressionQuality{85};
    QProperty<double> heicCompressionQuality{85};
    QProperty<double> avifCompressionQuality{85};
    QProperty<double> pdfCompressionQuality{85};
    QProperty<bool> automaticUpdateCheck{false};  ///< key "SUEnableAutomaticChecks"
    QProperty<bool> hasShownUpdatePreferencesDialog{false};
    QProperty<AppearanceMode> appearanceMode{AppearanceMode::system};
    QProperty<ProcessingMode> processingMode{ProcessingMode::convert};
    QProperty<bool> autoCompressionEnabled{false};

    [[nodiscard]] DefaultsStore& store() const { return *store_; }

    /// The eight recipe values back to 85, 85, 9, 7, 85, 85, 85, 85.
    void resetCompressionDefaults();

    /// Writes the two keys of the update checks, also when `automaticUpdateCheck` has not changed.
    void storeUpdateCheck();

    /// Where `system` looks for dark mode; without a source the key "AppleInterfaceStyle" of the store tells.
    /// Applies the appearance.
    void setSystemDarkSource(std::function<bool()> isDark);

    /// Works out light or dark and says so by appearanceApplied().
    void applyAppearance();

    /// To be called when the desktop's setting changes.
    void systemAppearanceChanged();

    [[nodiscard]] bool isDark() const { return dark_; }

signals:
    void appearanceApplied(bool dark);

private:
    void load();
    void keepAll();
    template <typename T>
    void keepAtOnce(QProperty<T>& property, const char* key);
    template <typename T>
    void keepDebounced(QProperty<T>& property, const char* key);

    std::shared_ptr<DefaultsStore> store_;
    std::function<bool()> systemIsDark_;
    bool dark_ = false;
    std::vector<QPropertyNotifier> observers_;
};

}  // namespace sorvik
