#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace sorvik::draw {

/// A value on the heap, perhaps absent, that copies and compares as a value: the room of a pointer for fields that
/// few elements have. Like std::optional to those that read it. Copies share what they hold until one is written to,
/// so that laying the attributes of a rule over a hundred thousand elements costs no more for a long list in it.
template <typename T>
class Boxed {
public:
    Boxed() = default;
    Boxed(T value) : held_(new Held{1, std::move(value)}) {}
    Boxed(const Boxed& other) noexcept : held_(other.held_) {
        if (held_ != nullptr) {
            held_->owners.fetch_add(1, std::memory_order_relaxed);
        }
    }
    Boxed(Boxed&& other) noexcept : held_(std::exchange(other.held_, nullptr)) {}
    Boxed& operator=(Boxed other) noexcept {
        std::swap(held_, other.held_);
        return *this;
    }
    ~Boxed() {
        if (held_ != nullptr && held_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete held_;
        }
    }

    [[nodiscard]] bool has_value() const { return held_ != nullptr; }  // NOLINT(readability-identifier-naming)
    explicit operator bool() const { return has_value(); }
    [[nodiscard]] const T& operator*() const { return held_->value; }
    [[nodiscard]] T& operator*() { return own(); }
    [[nodiscard]] const T* operator->() const { return &held_->value; }
    [[nodiscard]] T* operator->() { return &own(); }

    friend bool operator==(const Boxed& a, const Boxed& b) {
        return a.held_ == b.held_ || (a.has_value() && b.has_value() && *a == *b);
    }

private:
    struct Held {
        std::atomic<std::uint32_t> owners;
        T value;
    };

    T& own() {
        if (held_->owners.load(std::memory_order_acquire) > 1) {
            *this = Boxed(held_->value);
        }
        return held_->value;
    }

    Held* held_ = nullptr;
};

}  // namespace sorvik::draw
