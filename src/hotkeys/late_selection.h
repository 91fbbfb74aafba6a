#pragma once

#include <QString>

#include <functional>

namespace tralio {

/// A selection that the session shows to the program in front only, read once a window of ours is there.
struct LateSelection {
    enum class Age {
        recent,  ///< it was another one the last time
        unknown  ///< nobody has looked before: it may have been made long ago, and be marked no more
    };

    QString text;  ///< empty where there is none, or the same as the last time
    Age age = Age::recent;

    bool operator==(const LateSelection&) const = default;
};

/// Answers once, unless another is asked for before.
using LateSelectionReader = std::function<void(std::function<void(const LateSelection&)>)>;

}  // namespace tralio
