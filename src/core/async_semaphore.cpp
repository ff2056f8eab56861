#include "core/async_semaphore.h"

#include <QMetaObject>

namespace sorvik {

bool AsyncSemaphore::Wait::await_ready() const {
    if (semaphore_.permits_ < 1) {
        return false;
    }
    --semaphore_.permits_;
    return true;
}

void AsyncSemaphore::Wait::await_suspend(std::coroutine_handle<> caller) const {
    semaphore_.waiters_.push_back(caller);
}

void AsyncSemaphore::signal() {
    if (waiters_.empty()) {
        ++permits_;
        return;
    }
    const std::coroutine_handle<> oldest = waiters_.front();
    waiters_.pop_front();
    QMetaObject::invokeMethod(
        &resumer_, [oldest] { oldest.resume(); }, Qt::QueuedConnection);
}

}  // namespace sorvik
