#pragma once

#include <vector>

#include "programs/recogniser/ground/even_groups.h"

namespace tralio {

/// Which of some groups are no areas but letters, or their dots: beside a letter stand others of its colour,
/// its height and its stroke, of which some are as open as an "L" or an "n". Neither bars nor discs are. What
/// has much in it is a card beside a card. `unit` is the number of pixels of a logical one.
[[nodiscard]] std::vector<size_t> giantLetters(
    const EvenGroups& groups, const std::vector<size_t>& candidates, int unit);

}  // namespace tralio
