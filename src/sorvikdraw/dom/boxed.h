#pragma once

#include <memory>
#include <utility>

namespace sorvik::draw {

/// A value on the heap, perhaps absent, that copies and compares as a value: the room of a pointer for fields that
/// few elements have. Like std::optional to those that read it.
template <typename T>
class Boxed {
public:
    Boxed() = default;
    Boxed(T value) : value_(std::make_unique<T>(std::move(value))) {}  // NOLINT(google-explicit-constructor)
    Boxed(const Boxed& other) : value_(other.value_ ? std::make_unique<T>(*other.value_) : nullptr) {}
    Boxed(Boxed&&) noexcept = default;
    Boxed& operator=(const Boxed& other) { return *this = Boxed(other); }
    Boxed& operator=(Boxed&&) noexcept = default;
    ~Boxed() = default;

    [[nodiscard]] bool has_value() const { return value_ != nullptr; }  // NOLINT(readability-identifier-naming)
    explicit operator bool() const { return has_value(); }
    [[nodiscard]] const T& operator*() const { return *value_; }
    [[nodiscard]] T& operator*() { return *value_; }
    [[nodiscard]] const T* operator->() const { return value_.get(); }
    [[nodiscard]] T* operator->() { return value_.get(); }

    friend bool operator==(const Boxed& a, const Boxed& b) {
        return a.has_value() == b.has_value() && (!a.has_value() || *a == *b);
    }

private:
    std::unique_ptr<T> value_;
};

}  // namespace sorvik::draw
