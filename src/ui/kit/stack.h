#pragma once

#include <QBoxLayout>
#include <QMargins>

#include <initializer_list>
#include <variant>

namespace tralio {

/// Room that takes what is left.
struct Stretch {};

/// Room of a fixed size, beside the stack's spacing.
struct Gap {
    int size;
};

struct StackItem {
    // Implicit, so that a stack reads as the list of what stands in it.
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

/// Columns and rows, so that a panel's code reads like its description: from top to bottom, from start to
/// end. In a row, what is lower than the row is centred. The parts come to belong to the widget that the
/// outermost layout is set on.
[[nodiscard]] QBoxLayout* column(const StackSpec& spec, std::initializer_list<StackItem> items);
[[nodiscard]] QBoxLayout* row(const StackSpec& spec, std::initializer_list<StackItem> items);

/// Sets a stack on its owner, which is given back.
template <typename Owner>
Owner* filled(Owner* owner, QLayout* layout) {
    owner->setLayout(layout);
    return owner;
}

}  // namespace tralio
