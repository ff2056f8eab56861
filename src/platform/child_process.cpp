#include "platform/child_process.h"

#include "platform/system_words.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <linux/close_range.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <csignal>

namespace sorvik {
namespace {

/// Built upon this process's own variables, so that those that the caller left alone keep their bytes
/// even when they are no valid UTF-8.
QProcessEnvironment childEnvironment(const Environment& wanted) {
    QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
    for (const QString& name : result.keys()) {
        if (!wanted.contains(name)) {
            result.remove(name);
        }
    }
    for (const auto& [name, value] : wanted.asKeyValueRange()) {
        if (!result.contains(name) || result.value(name) != value) {
            result.insert(name, value);
        }
    }
    return result;
}

/// A string with a NUL would reach the child cut short.
bool holdsNul(const ChildSetup& setup) {
    const auto nulIn = [](const QString& text) { return text.contains(QChar::Null); };
    return nulIn(setup.executable) || nulIn(setup.workingDirectory) || std::ranges::any_of(setup.arguments, nulIn);
}

int errorOfDirectory(const QString& path) {
    struct stat attributes {};
    if (path.isEmpty()) {
        return 0;
    }
    if (stat(QFile::encodeName(path).constData(), &attributes) != 0) {
        return errno;
    }
    return S_ISDIR(attributes.st_mode) ? 0 : ENOTDIR;
}

/// Why a child can't start, as far as it can be seen from here; 0 when nothing speaks against it.
int visibleObstacle(const ChildSetup& setup) {
    if (holdsNul(setup)) {
        return EINVAL;
    }
    if (!setup.executable.startsWith(QLatin1Char('/'))) {
        return ENOENT;  // QProcess would search PATH
    }
    if (const int error = errorOfDirectory(setup.workingDirectory); error != 0) {
        return error;
    }
    return access(QFile::encodeName(setup.executable).constData(), X_OK) == 0 ? 0 : errno;
}

/// Runs in the child, in the memory of this process: nothing but system calls.
void setApart() {
    // Whatever a library or our own parent left inheritable stays out of the child.
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    // A group of its own: an interrupt at the terminal reaches this program, which lets its tools end.
    setpgid(0, 0);
    // Should this program be killed, the tool goes too. The signal comes when the thread that started the
    // child ends, and that thread waits in runChild() for as long as the child lives.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

void prepare(QProcess& process, const ChildSetup& setup) {
    process.setProgram(setup.executable);
    process.setArguments(setup.arguments);
    process.setWorkingDirectory(setup.workingDirectory);
    if (setup.environment) {
        process.setProcessEnvironment(childEnvironment(*setup.environment));
    }
    process.setChildProcessModifier(setApart);
    process.setStandardInputFile(QProcess::nullDevice());
    if (setup.output == ChildSetup::Output::captured) {
        process.setProcessChannelMode(QProcess::MergedChannels);
    } else {
        process.setStandardErrorFile(QProcess::nullDevice());
    }
    if (setup.output == ChildSetup::Output::discarded) {
        process.setStandardOutputFile(QProcess::nullDevice());
    }
}

void keepTail(QByteArray& tail, const QByteArray& more) {
    tail += more;
    if (tail.size() > childOutputLimit) {
        tail.remove(0, tail.size() - childOutputLimit);
    }
}

void keepHead(QByteArray& head, const QByteArray& more) {
    head += more.first(std::min(more.size(), childDocumentLimit - head.size()));
}

/// Returns soon after the child itself has ended, also when something that it started goes on and
/// holds the pipe open; not before, when it closes its streams and goes on.
QByteArray drainUntilEnd(QProcess& process, void (*keep)(QByteArray& kept, const QByteArray& more)) {
    QByteArray kept;
    while (process.waitForReadyRead(-1)) {
        keep(kept, process.readAll());
    }
    process.waitForFinished(-1);
    keep(kept, process.readAll());
    return kept;
}

ChildResult notStarted(const QString& words) {
    ChildResult result;
    result.launchError = words;
    return result;
}

}  // namespace

Environment processEnvironment() {
    const QProcessEnvironment system = QProcessEnvironment::systemEnvironment();
    Environment result;
    for (const QString& name : system.keys()) {
        result.insert(name, system.value(name));
    }
    return result;
}

ChildResult runChild(const ChildSetup& setup) {
    // Asked for before the start, since QProcess has its words from the user's locale.
    if (const int obstacle = visibleObstacle(setup); obstacle != 0) {
        return notStarted(systemWords(obstacle));
    }
    QProcess process;
    prepare(process, setup);
    process.start(QIODevice::ReadOnly);
    if (!process.waitForStarted(-1)) {
        return notStarted(process.errorString());
    }
    ChildResult result;
    result.started = true;
    if (setup.output != ChildSetup::Output::discarded) {
        result.output = drainUntilEnd(process, setup.output == ChildSetup::Output::document ? keepHead : keepTail);
    } else {
        process.waitForFinished(-1);
    }
    result.crashed = process.exitStatus() == QProcess::CrashExit;
    result.exitStatus = result.crashed ? -1 : process.exitCode();
    return result;
}

}  // namespace sorvik
