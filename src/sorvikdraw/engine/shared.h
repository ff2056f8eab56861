#pragma once

#include <memory>
#include <utility>

namespace sorvik::draw {

/// A constant value that many hold together and that compares as a value. May be empty.
template <typename T>
class Shared : public std::shared_ptr<const T> {
public:
    using std::shared_ptr<const T>::shared_ptr;
    Shared(std::shared_ptr<const T> value)  // NOLINT(google-explicit-constructor): another name for the same
        : std::shared_ptr<const T>(std::move(value)) {}
    Shared(T value)  // NOLINT(google-explicit-constructor): a value that others may come to hold as well
        : std::shared_ptr<const T>(std::make_shared<const T>(std::move(value))) {}

    friend bool operator==(const Shared& a, const Shared& b) {
        return a.get() == b.get() || (a && b && *a.get() == *b.get());
    }
};

}  // namespace sorvik::draw
