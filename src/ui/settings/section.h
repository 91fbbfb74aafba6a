#pragma once

#include "ui/kit/icon.h"
#include "ui/kit/stack.h"

namespace tralio {

class Surface;

/// The frame of one section of the settings, with a stack of parts in it.
[[nodiscard]] Surface* section(int spacing, std::initializer_list<StackItem> items);

/// A lighter frame inside a section.
[[nodiscard]] Surface* sectionBlock(int spacing, std::initializer_list<StackItem> items);

[[nodiscard]] QBoxLayout* sectionHeading(const Icon& icon, const QString& title);

/// After a word-button at the end of a row: what the button shows only on hover reaches over the edge, so
/// that its text ends there.
inline constexpr Gap wordOverhang{-6};

}  // namespace tralio
