#pragma once

#include <QString>

#include <functional>

namespace tralio {

/// A selection in sessions that show it only to the program in front, read once a window of ours is in front.
struct LateSelection {
    enum class Age {
        recent,  ///< it was a different one at the last look
        unknown  ///< this was the first look: it may be old, and not be highlighted any more
    };

    QString text;  ///< empty if there is none, or the same as at the last look
    Age age = Age::recent;

    bool operator==(const LateSelection&) const = default;
};

/// Calls back once, unless a later request replaces this one.
using LateSelectionReader = std::function<void(std::function<void(const LateSelection&)>)>;

}  // namespace tralio
