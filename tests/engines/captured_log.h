#pragma once

#include <QString>
#include <QStringList>

#include <mutex>

#include "platform/log.h"

namespace sorvik {

/// Collects log lines for as long as it lives.
class CapturedLog {
public:
    CapturedLog() {
        setLogSink([this](const QString& line) {
            const std::lock_guard guard(lock_);
            lines_ << line;
        });
    }
    ~CapturedLog() { setLogSink({}); }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    [[nodiscard]] QStringList lines() const {
        const std::lock_guard guard(lock_);
        return lines_;
    }

private:
    mutable std::mutex lock_;
    QStringList lines_;
};

}  // namespace sorvik
