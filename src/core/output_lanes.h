#pragma once

#include <QString>

#include <map>
#include <memory>

#include "core/async_semaphore.h"

namespace sorvik {

/// Lets rows that end in the same output path finish one after the other, in the order in which they
/// come, and all others side by side. Main context only; must outlive its passes.
class OutputLanes {
public:
    /// The right to finish into one path; gives it up when it goes.
    class Pass {
    public:
        Pass(OutputLanes& lanes, QString path);
        ~Pass();
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;

        /// To be awaited before anything is done to the path. Once.
        AsyncSemaphore::Wait turn();

    private:
        OutputLanes& lanes_;
        QString path_;
        bool taken_ = false;
    };

private:
    struct Lane {
        AsyncSemaphore turn{1};
        int users = 0;
    };
    std::map<QString, std::unique_ptr<Lane>> lanes_;
};

}  // namespace sorvik
