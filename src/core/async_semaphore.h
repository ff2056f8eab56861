#pragma once

#include <QObject>

#include <coroutine>
#include <deque>

namespace sorvik {

/// A counting semaphore for coroutines of one thread's event loop. A caller that finds no permit is
/// suspended; permits pass to the waiting in the order of their coming. Must outlive its waiters.
class AsyncSemaphore {
public:
    explicit AsyncSemaphore(int permits) : permits_(permits) {}

    class [[nodiscard]] Wait {
    public:
        explicit Wait(AsyncSemaphore& semaphore) : semaphore_(semaphore) {}
        [[nodiscard]] bool await_ready() const;
        void await_suspend(std::coroutine_handle<> caller) const;
        void await_resume() const {}

    private:
        AsyncSemaphore& semaphore_;
    };

    /// `co_await semaphore.wait()` takes one permit.
    Wait wait() { return Wait(*this); }

    /// Gives one permit back: to the oldest waiter, which goes on from the event loop, or to the count.
    void signal();

    [[nodiscard]] int permits() const { return permits_; }
    [[nodiscard]] std::size_t waiting() const { return waiters_.size(); }

private:
    int permits_;
    std::deque<std::coroutine_handle<>> waiters_;
    QObject resumer_;  // waiters are resumed by its events, so that signal() never runs their code
};

}  // namespace sorvik
