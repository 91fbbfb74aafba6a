#pragma once

#include <algorithm>
#include <functional>
#include <span>
#include <vector>

namespace tralio {

/// Those of some things, sorted by a key, whose key is no farther from a value than that.
template <typename T, typename Key>
[[nodiscard]] std::span<const T> nearTo(int value, const std::vector<T>& sorted, int reach, Key key) {
    const auto begin = std::lower_bound(
        sorted.begin(), sorted.end(), value - reach,
        [&](const T& one, int least) { return std::invoke(key, one) < least; });
    const auto end = std::upper_bound(begin, sorted.end(), value + reach,
        [&](int most, const T& one) { return most < std::invoke(key, one); });
    return std::span(sorted).subspan(
        static_cast<size_t>(begin - sorted.begin()), static_cast<size_t>(end - begin));
}

}  // namespace tralio
