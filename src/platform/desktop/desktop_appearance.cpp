#include "platform/desktop/desktop_appearance.h"

#include "platform/desktop/session_bus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace sorvik {
namespace {

const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearanceSpace = QStringLiteral("org.freedesktop.appearance");
const auto schemeKey = QStringLiteral("color-scheme");

// Older portals know only Read, which wraps its answer twice.
const auto readOne = QStringLiteral("ReadOne");
const auto read = QStringLiteral("Read");

constexpr uint preferDark = 1;

QVariant unwrapped(QVariant value) {
    constexpr int deepest = 4;
    for (int depth = 0; depth < deepest && value.metaType() == QMetaType::fromType<QDBusVariant>(); ++depth) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

}  // namespace

void DesktopAppearance::start() {
    withSessionBus(this, [this](const QDBusConnection& bus) { follow(bus); });
}

void DesktopAppearance::follow(const QDBusConnection& bus) {
    if (!bus.isConnected()) {
        return;
    }
    // Without the service's name: for a named one the library would wait for the bus to tell its owner.
    QDBusConnection(bus).connect({}, portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                                 {appearanceSpace, schemeKey}, QStringLiteral("ssv"), this,
                                 SLOT(settingChanged(QDBusMessage)));
    ask(bus, readOne);
}

void DesktopAppearance::ask(const QDBusConnection& bus, const QString& method) {
    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, method);
    call << appearanceSpace << schemeKey;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, bus, method] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError()) {
            take(QVariant::fromValue(reply.value()));
        } else if (reply.error().type() == QDBusError::UnknownMethod && method == readOne) {
            ask(bus, read);
        }
    });
}

// A slot with a QDBusVariant can't be connected before the library has seen its first message.
void DesktopAppearance::settingChanged(const QDBusMessage& message) {
    const QVariantList arguments = message.arguments();
    if (arguments.value(0) == appearanceSpace && arguments.value(1) == schemeKey) {
        take(arguments.value(2));
    }
}

void DesktopAppearance::take(const QVariant& scheme) {
    const bool dark = unwrapped(scheme).toUInt() == preferDark;
    if (dark != dark_) {
        dark_ = dark;
        emit changed();
    }
}

}  // namespace sorvik
