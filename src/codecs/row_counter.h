#pragma once

#include <cstdint>
#include <stdexcept>

namespace sorvik::codecs {

/// Holds callers to the number of rows that they announced. Throws std::logic_error.
class RowCounter {
public:
    explicit RowCounter(std::uint32_t rows) : rows_(rows) {}

    void take(std::uint32_t count) {
        if (count > rows_ - taken_) {
            throw std::logic_error("more rows than the picture has");
        }
        taken_ += count;
    }
    void requireAll() const {
        if (taken_ != rows_) {
            throw std::logic_error("fewer rows than the picture has");
        }
    }
    [[nodiscard]] std::uint32_t left() const { return rows_ - taken_; }

private:
    std::uint32_t rows_;
    std::uint32_t taken_ = 0;
};

}  // namespace sorvik::codecs
