#pragma once

#include <cstddef>
#include <initializer_list>
#include <utility>
#include <vector>

#include "sorvikdraw/engine/shared.h"

namespace sorvik::draw {

/// A constant list that many hold together, a pointer to each of them: what a `use` repeats is there once. Reads like
/// the vector that it is made of, and compares as one.
template <typename T>
class SharedList {
public:
    using value_type = T;  // NOLINT(readability-identifier-naming): the name that algorithms look for

    SharedList() = default;
    SharedList(std::vector<T> list) : list_(std::move(list)) {}  // NOLINT(google-explicit-constructor)
    SharedList(std::initializer_list<T> list) : list_(std::vector<T>(list)) {}

    operator const std::vector<T>&() const {  // NOLINT(google-explicit-constructor): it is one
        static const std::vector<T> none;
        return list_ ? *list_ : none;
    }
    [[nodiscard]] const std::vector<T>& vector() const { return *this; }
    [[nodiscard]] auto begin() const { return vector().begin(); }
    [[nodiscard]] auto end() const { return vector().end(); }
    [[nodiscard]] std::size_t size() const { return vector().size(); }
    [[nodiscard]] bool empty() const { return vector().empty(); }
    [[nodiscard]] const T& operator[](std::size_t index) const { return vector()[index]; }
    [[nodiscard]] const T& front() const { return vector().front(); }
    [[nodiscard]] const T& back() const { return vector().back(); }

    friend bool operator==(const SharedList& a, const SharedList& b) {
        return a.list_.get() == b.list_.get() || a.vector() == b.vector();
    }

private:
    Shared<std::vector<T>> list_;
};

}  // namespace sorvik::draw
