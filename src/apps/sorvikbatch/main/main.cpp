#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QMetaObject>

#include <csignal>
#include <cstdio>
#include <variant>

#include "apps/sorvikbatch/batch_front.h"
#include "apps/sorvikbatch/batch_options.h"
#include "apps/sorvikbatch/interrupt.h"
#include "platform/log.h"
#include "services/temporary_files.h"

using namespace sorvik;

namespace {

void logToStandardError(const QString& line) { std::fprintf(stderr, "%s\n", line.toUtf8().constData()); }

int convert(ConvertOptions options) {
    std::signal(SIGPIPE, SIG_IGN);  // a reader that has gone must not end the batch in the middle
    setLogSink(options.verbose ? LogSink(&logToStandardError) : LogSink());
    TempFileManager::shared().cleanupOrphanedFiles();
    BatchFront front(std::move(options), stdout, isatty(STDERR_FILENO) != 0 ? stderr : nullptr);
    const Interrupt interrupt;
    QObject::connect(&interrupt, &Interrupt::raised, &front, &BatchFront::cancel);
    QObject::connect(&front, &BatchFront::finished, qApp, &QCoreApplication::exit, Qt::QueuedConnection);
    QMetaObject::invokeMethod(&front, &BatchFront::start, Qt::QueuedConnection);
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    auto parsed = parseCommandLine(QCoreApplication::arguments(), QDir::currentPath());
    if (const auto* answer = std::get_if<Answer>(&parsed)) {
        std::fprintf(answer->status == statusSuccess ? stdout : stderr, "%s\n", answer->text.toUtf8().constData());
        return answer->status;
    }
    return convert(std::get<ConvertOptions>(std::move(parsed)));
}
