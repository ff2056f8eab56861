#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace sorvik::draw {

/// Holds the drawing of one thread to limits::drawingSeconds of processor time, counted from its making.
class DrawingClock {
public:
    /// `seconds` of the thread's processor time from now on.
    explicit DrawingClock(double seconds);

    /// Announces work by a guess of its nanoseconds, so that the time is looked at now and then only. Throws
    /// LimitError when it is up.
    void spend(double nanoseconds) {
        spent_ += nanoseconds;
        if (spent_ > lookEvery) {
            look();
        }
    }
    /// Looks at once.
    void look();

private:
    static constexpr double lookEvery = 5e6;

    double end_;
    double spent_ = 0;
};

/// Counts the pixels that a drawing holds at a time, in all its threads: canvas, layers, tiles and pictures.
class PixelBudget {
public:
    /// Gives its pixels back at its end.
    class Share {
    public:
        Share() = default;
        Share(PixelBudget& budget, std::int64_t pixels) : budget_(&budget), pixels_(pixels) {}
        Share(Share&& other) noexcept
            : budget_(std::exchange(other.budget_, nullptr)), pixels_(std::exchange(other.pixels_, 0)) {}
        Share& operator=(Share&& other) noexcept {
            std::swap(budget_, other.budget_);
            std::swap(pixels_, other.pixels_);
            return *this;
        }
        Share(const Share&) = delete;
        Share& operator=(const Share&) = delete;
        ~Share() {
            if (budget_ != nullptr) {
                budget_->used_ -= pixels_;
            }
        }

    private:
        PixelBudget* budget_ = nullptr;
        std::int64_t pixels_ = 0;
    };

    /// Throws LimitError when more than limits::canvasPixels would be held.
    [[nodiscard]] Share take(std::int64_t pixels);

private:
    std::atomic<std::int64_t> used_ = 0;
};

}  // namespace sorvik::draw
