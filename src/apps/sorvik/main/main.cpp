#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <string_view>

#include "apps/sorvik/sorvik_app.h"
#include "platform/defaults_store.h"
#include "platform/desktop/single_instance.h"
#include "platform/interrupt.h"

using namespace sorvik;

namespace {

/// What was named on the command line: URLs or paths, as file managers hand them over.
QList<QUrl> namedFiles(const QCoreApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Converts and compresses pictures."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("files"), QStringLiteral("Pictures to add to the list."),
                                 QStringLiteral("[files...]"));
    parser.process(application);
    QList<QUrl> urls;
    for (const QString& name : parser.positionalArguments()) {
        const QUrl url(name);
        urls << (url.isLocalFile() ? url : QUrl::fromLocalFile(QFileInfo(name).absoluteFilePath()));
    }
    return urls;
}

/// Asks only for words, which need no display.
bool asksForWords(int argc, char* argv[]) {
    constexpr std::array<std::string_view, 5> words{"-h", "--help", "--help-all", "-v", "--version"};
    return std::any_of(argv + std::min(argc, 1), argv + argc, [&](std::string_view argument) {
        return std::find(words.begin(), words.end(), argument) != words.end();
    });
}

int run(int argc, char* argv[]) {
    QCoreApplication::setApplicationName(QStringLiteral("sorvik"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SORVIK_VERSION));
    if (asksForWords(argc, argv)) {
        namedFiles(QCoreApplication(argc, argv));
    }
    const QByteArray token = SingleInstance::activationToken();
    QApplication application(argc, argv);
    QApplication::setApplicationDisplayName(QStringLiteral("Sorvik"));
    QApplication::setDesktopFileName(QStringLiteral("sorvik"));
    std::signal(SIGPIPE, SIG_IGN);  // a reader of the log that has gone must not end the program
    const QList<QUrl> files = namedFiles(application);
    auto instance = std::make_unique<SingleInstance>();
    if (instance->start({files, token}) == SingleInstance::Role::handedOver) {
        return 0;
    }
    SorvikApp app(std::make_shared<IniDefaultsStore>(userDefaultsPath()));
    QObject::connect(instance.get(), &SingleInstance::received, &app, &SorvikApp::takeOver);
    const Interrupt interrupt;
    QObject::connect(&interrupt, &Interrupt::raised, &app, &SorvikApp::close);
    app.show(files);
    const int status = QApplication::exec();
    instance.reset();  // while the last files are finished, a new start is one of its own
    return status;
}

}  // namespace

int main(int argc, char* argv[]) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "sorvik: %s\n", error.what());
        return 1;
    }
}
