#pragma once

#include <array>
#include <vector>

#include "programs/recogniser/marks/drawn_signs.h"
#include "programs/recogniser/marks/text_marks.h"

namespace tralio {

/// By how much something differs from the ground, in each channel.
using Shift = std::array<double, 3>;

[[nodiscard]] double product(const Shift& a, const Shift& b);

/// How alike two colours are: 1 for those of one ink, however strong.
[[nodiscard]] double likeness(const Shift& a, const Shift& b);

void add(Shift& sum, const Shift& shift);

/// What each of a mark's rows has. The fringes of letters add up to their colour.
[[nodiscard]] std::vector<Shift> shiftsOf(const LabelledMark& mark, const TextMarks& marks);

[[nodiscard]] Shift shiftOf(const std::vector<Shift>& rows);

/// Whether what is inside a thick mark goes over from one colour to another.
[[nodiscard]] bool goesOver(const LabelledMark& mark, const TextMarks& marks);

}  // namespace tralio
