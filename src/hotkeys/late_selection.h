#pragma once

#include <QString>

#include <functional>

namespace tralio {

/// A selection in sessions that show it only to the program in front, read once a window of ours is in front.
struct LateSelection {
    enum class Use {
        translate,
        offer  ///< only if the user wants it: it may be old and not be highlighted any more, or a password
    };

    QString text;  ///< empty if there is none, or the same as at the last look
    Use use = Use::translate;

    bool operator==(const LateSelection&) const = default;
};

/// Calls back once, unless a later request replaces this one.
using LateSelectionReader = std::function<void(std::function<void(const LateSelection&)>)>;

}  // namespace tralio
