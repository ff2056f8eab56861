#include "sorvikdraw/engine/drawing_budget.h"

#include <ctime>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/drawing_error.h"

namespace sorvik::draw {
namespace {

double threadSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace

DrawingClock::DrawingClock(double seconds) : end_(threadSeconds() + seconds) {}

void DrawingClock::look() {
    spent_ = 0;
    if (threadSeconds() > end_) {
        throw LimitError("the drawing takes too long");
    }
}

PixelBudget::Share PixelBudget::take(std::int64_t pixels) {
    if (used_ += pixels; used_ > limits::canvasPixels) {
        used_ -= pixels;
        throw LimitError("the drawing needs too many pixels");
    }
    return {*this, pixels};
}

}  // namespace sorvik::draw
