#include "core/output_lanes.h"

#include <utility>

namespace sorvik {

OutputLanes::Pass::Pass(OutputLanes& lanes, QString path) : lanes_(lanes), path_(std::move(path)) {
    auto& lane = lanes_.lanes_[path_];
    if (!lane) {
        lane = std::make_unique<Lane>();
    }
    ++lane->users;
}

OutputLanes::Pass::~Pass() {
    const auto lane = lanes_.lanes_.find(path_);
    if (taken_) {
        lane->second->turn.signal();
    }
    if (--lane->second->users == 0) {
        lanes_.lanes_.erase(lane);
    }
}

AsyncSemaphore::Wait OutputLanes::Pass::turn() {
    taken_ = true;
    return lanes_.lanes_.at(path_)->turn.wait();
}

}  // namespace sorvik
