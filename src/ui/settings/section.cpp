#include "ui/settings/section.h"

#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/surface.h"
#include "ui/kit/theme.h"

namespace tralio {

Surface* section(int spacing, std::initializer_list<StackItem> items) {
    return filled(new Surface(ColorRole::surface1, ColorRole::border15, radius::section),
        column({.spacing = spacing, .padding = {12, 12, 12, 12}}, items));
}

Surface* sectionBlock(int spacing, std::initializer_list<StackItem> items) {
    return filled(new Surface(ColorRole::surface2, ColorRole::hairline, radius::block),
        column({.spacing = spacing, .padding = {10, 10, 10, 10}}, items));
}

QBoxLayout* sectionHeading(const Icon& icon, const QString& title) {
    return row({.spacing = 6},
        {new IconView(icon, ColorRole::accentIcon), new Label(title, text::headline), Stretch{}});
}

}  // namespace tralio
