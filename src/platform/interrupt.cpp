#include "platform/interrupt.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

namespace sorvik {
namespace {

// A signal handler reaches nothing but globals.
std::array<int, 2> wakePipe{-1, -1};

extern "C" void wake(int signalNumber) {
    const int before = errno;
    const char byte = 1;
    [[maybe_unused]] const auto written = write(wakePipe[1], &byte, 1);
    std::signal(signalNumber, SIG_DFL);
    errno = before;
}

}  // namespace

Interrupt::Interrupt(QObject* parent) : QObject(parent) {
    if (pipe2(wakePipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    auto* notifier = new QSocketNotifier(wakePipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        emit raised();
    });
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        std::signal(number, wake);
    }
}

}  // namespace sorvik
