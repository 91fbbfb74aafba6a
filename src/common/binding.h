#pragma once

#include <functional>

namespace tralio {

class ObservableObject;

/// A two-way reference to a value that another object owns.
template <typename T>
struct Binding {
    std::function<T()> get;
    std::function<void(T)> set;
    ObservableObject* owner = nullptr;  ///< announces changes of the value
};

}  // namespace tralio
