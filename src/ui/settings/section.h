#pragma once

#include "ui/kit/icon.h"
#include "ui/kit/stack.h"

namespace tralio {

class Surface;

/// A section of the settings, with its parts in a column.
[[nodiscard]] Surface* section(int spacing, std::initializer_list<StackItem> items);

/// A lighter block within a section.
[[nodiscard]] Surface* sectionBlock(int spacing, std::initializer_list<StackItem> items);

[[nodiscard]] QBoxLayout* sectionHeading(const Icon& icon, const QString& title);

/// For the end of a row, after a word-button: lets its padding, which shows only on hover, extend beyond the
/// edge, so that its text is flush with it.
inline constexpr Gap wordOverhang{-6};

}  // namespace tralio
