#pragma once

#include <vector>

#include "ocr/text_observation.h"

namespace tralio {

/// By how much of a picture's height the centres of two boxes may differ at least and still share a line.
inline constexpr double leastRowTolerance = 0.015;

/// Whether `a` is read before `b`: left to right on one visual line, and otherwise top to bottom. Boxes share
/// a line when their centres differ by no more than a tolerance, so this is not transitive.
[[nodiscard]] bool readsBefore(const NormalizedRect& a, const NormalizedRect& b);

/// Puts lines into the order in which a reader takes them in. Lines of which neither is read first keep their
/// order.
void sortIntoReadingOrder(std::vector<TextObservation>& observations);

}  // namespace tralio
