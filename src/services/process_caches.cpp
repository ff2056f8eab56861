#include "services/process_caches.h"

#include <mutex>
#include <utility>
#include <vector>

namespace sorvik {
namespace {

struct Registry {
    std::mutex lock;
    std::vector<std::function<void()>> clears;
};

// Never destroyed: a cache may be used first while the program ends.
Registry& registry() {
    static Registry& instance = *new Registry;
    return instance;
}

std::vector<std::function<void()>> registered() {
    const std::scoped_lock guard(registry().lock);
    return registry().clears;
}

}  // namespace

void registerProcessCache(std::function<void()> clear) {
    const std::scoped_lock guard(registry().lock);
    registry().clears.push_back(std::move(clear));
}

void clearProcessCaches() {
    // Without the registry's lock, since a cache may register while it holds its own.
    for (const auto& clear : registered()) {
        clear();
    }
}

}  // namespace sorvik
