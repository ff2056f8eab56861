#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QMetaObject>

#include <csignal>
#include <cstdio>
#include <exception>
#include <variant>

#include "apps/sorvikbatch/batch_front.h"
#include "apps/sorvikbatch/command_line.h"
#include "apps/sorvikbatch/metadata_front.h"
#include "engines/replacement_journal.h"
#include "platform/interrupt.h"
#include "platform/log.h"
#include "services/temporary_files.h"

using namespace sorvik;

namespace {

void logToStandardError(const QString& line) { std::fprintf(stderr, "%s\n", line.toUtf8().constData()); }

void sendLog(bool verbose) { setLogSink(verbose ? LogSink(&logToStandardError) : LogSink()); }

int runBatch(BatchOptions options, bool verbose) {
    std::signal(SIGPIPE, SIG_IGN);  // a reader that has gone must not end the batch in the middle
    sendLog(verbose);
    recoverReplacements();
    TempFileManager::shared().cleanupOrphanedFiles();
    BatchFront front(std::move(options), stdout, isatty(STDERR_FILENO) != 0 ? stderr : nullptr);
    const Interrupt interrupt;
    QObject::connect(&interrupt, &Interrupt::raised, &front, &BatchFront::cancel);
    QObject::connect(&front, &BatchFront::finished, qApp, &QCoreApplication::exit, Qt::QueuedConnection);
    QMetaObject::invokeMethod(&front, &BatchFront::start, Qt::QueuedConnection);
    return QCoreApplication::exec();
}

int run(const ConvertOptions& options) { return runBatch(options, options.common.verbose); }
int run(const CompressOptions& options) { return runBatch(options, options.common.verbose); }

int run(const MetadataOptions& options) {
    sendLog(options.common.verbose);
    return showMetadata(options, stdout, stderr);
}

int run(const Answer& answer) {
    std::fprintf(answer.status == statusSuccess ? stdout : stderr, "%s\n", answer.text.toUtf8().constData());
    return answer.status;
}

}  // namespace

int main(int argc, char* argv[]) {
    try {
        const QCoreApplication application(argc, argv);
        const CommandLine commandLine = parseCommandLine(QCoreApplication::arguments(), QDir::currentPath());
        return std::visit([](const auto& each) { return run(each); }, commandLine);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "sorvikbatch: %s\n", error.what());
        return statusRowFailed;
    }
}
