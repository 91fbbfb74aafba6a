#include "ui/kit/stack.h"

namespace tralio {
namespace {

QBoxLayout* stack(
    QBoxLayout::Direction direction, const StackSpec& spec, std::initializer_list<StackItem> items) {
    auto* layout = new QBoxLayout(direction);
    layout->setSpacing(spec.spacing);
    layout->setContentsMargins(spec.padding);
    for (const StackItem& item : items)
        if (auto* const* widget = std::get_if<QWidget*>(&item.content))
            layout->addWidget(*widget, item.stretch, item.alignment);
        else if (auto* const* inner = std::get_if<QLayout*>(&item.content))
            layout->addLayout(*inner, item.stretch);
        else if (const auto* gap = std::get_if<Gap>(&item.content))
            layout->addSpacing(gap->size);
        else
            layout->addStretch(1);
    return layout;
}

}  // namespace

QBoxLayout* column(const StackSpec& spec, std::initializer_list<StackItem> items) {
    return stack(QBoxLayout::TopToBottom, spec, items);
}

QBoxLayout* row(const StackSpec& spec, std::initializer_list<StackItem> items) {
    return stack(QBoxLayout::LeftToRight, spec, items);
}

}  // namespace tralio
