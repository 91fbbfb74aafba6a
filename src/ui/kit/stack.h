#pragma once

#include <QBoxLayout>
#include <QMargins>

#include <initializer_list>
#include <variant>

namespace tralio {

/// Flexible room that takes what is left.
struct Stretch {};

/// Room of a fixed size, in addition to the stack's spacing.
struct Gap {
    int size;
};

struct StackItem {
    // Implicit, so that a stack reads as a list of its parts.
    StackItem(QWidget* widget, Qt::Alignment alignment = {}, int stretch = 0)
        : content(widget), alignment(alignment), stretch(stretch) {}
    StackItem(QLayout* layout, int stretch = 0) : content(layout), stretch(stretch) {}
    StackItem(Stretch room) : content(room) {}
    StackItem(Gap room) : content(room) {}

    std::variant<QWidget*, QLayout*, Stretch, Gap> content;
    Qt::Alignment alignment;
    int stretch = 0;
};

struct StackSpec {
    int spacing = 0;
    QMargins padding = {};
};

/// Columns and rows, so that a panel's code reads like a description: from top to bottom, from left to right.
/// In a row, lower parts are vertically centred. The parts become children of the widget on which the
/// outermost layout is set.
[[nodiscard]] QBoxLayout* column(const StackSpec& spec, std::initializer_list<StackItem> items);
[[nodiscard]] QBoxLayout* row(const StackSpec& spec, std::initializer_list<StackItem> items);

/// Sets a stack as the layout of its owner. Returns the owner.
template <typename Owner>
Owner* filled(Owner* owner, QLayout* layout) {
    owner->setLayout(layout);
    return owner;
}

}  // namespace tralio
