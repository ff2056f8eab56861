// second_start PATH...: prints its role; the first one then prints a line for each file that it is handed.

#include <QCoreApplication>

#include "platform/desktop/single_instance.h"
#include "platform/log.h"

int main(int argc, char** argv) {
    using sorvik::SingleInstance;
    const QCoreApplication application(argc, argv);
    sorvik::InstanceMessage message{.urls = {}, .activationToken = SingleInstance::activationToken()};
    for (const QString& path : QCoreApplication::arguments().mid(1)) {
        message.urls << QUrl::fromLocalFile(path);
    }
    SingleInstance instance;
    QObject::connect(&instance, &SingleInstance::received, [](const QList<QUrl>& urls) {
        for (const QUrl& url : urls) {
            sorvik::logLine(url.toLocalFile());
        }
    });
    switch (instance.start(message)) {
        case SingleInstance::Role::first:
            sorvik::logLine(QStringLiteral("first"));
            return QCoreApplication::exec();
        case SingleInstance::Role::handedOver:
            sorvik::logLine(QStringLiteral("handed over"));
            return 0;
        case SingleInstance::Role::alone:
            sorvik::logLine(QStringLiteral("alone"));
            return 0;
    }
}
