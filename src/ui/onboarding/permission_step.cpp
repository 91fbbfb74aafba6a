#include "ui/onboarding/permission_step.h"

#include "ui/kit/button.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/label.h"
#include "ui/kit/stack.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int iconSize = 16;

constexpr ButtonStyle requestButton{.height = 28,
    .padding = 12,
    .gap = 6,
    .text = text::blockTitle,
    .iconSize = 11,
    .fill = ColorRole::redFill,
    .color = ColorRole::onFill};

}  // namespace

PermissionStep::PermissionStep(const Texts& texts, std::function<void()> request, QWidget* parent)
    : QWidget(parent) {
    m_icon = new IconView({u"exclamationmark.triangle.fill"_s, iconSize}, ColorRole::red);
    m_badge = new Badge(badge::missing, {});
    auto* description = new Label(texts.description, text::caption, ColorRole::secondary);
    description->setWraps();
    auto* button = new Button(requestButton, {.icon = u"arrow.up.forward.app.fill"_s, .title = texts.button});
    connect(button, &Button::clicked, this, std::move(request));
    m_request = filled(new QWidget, column({}, {Gap{10}, {button, Qt::AlignLeft}}));

    m_surface = filled(new Surface(ColorRole::redTint, ColorRole::redTintCardEdge, radius::section),
        column({.padding = {12, 12, 12, 12}},
            {row({.spacing = 10}, {m_icon, new Label(texts.title, text::cardTitle), Stretch{}, m_badge}),
                Gap{4}, column({.padding = {30, 0, 0, 0}}, {description, m_request})}));
    filled(this, column({}, {m_surface}));
    setGranted(false);
}

void PermissionStep::setGranted(bool granted) {
    m_surface->setFill(granted ? ColorRole::greenTint : ColorRole::redTint);
    m_surface->setEdge(granted ? ColorRole::greenTintEdge : ColorRole::redTintCardEdge);
    m_icon->setIcon({granted ? u"checkmark.circle.fill"_s : u"exclamationmark.triangle.fill"_s, iconSize});
    m_icon->setColor(granted ? ColorRole::green : ColorRole::red);
    m_badge->setStyle(granted ? badge::granted : badge::missing);
    m_badge->setText(granted ? u"ĐÃ CẤP"_s : u"CHƯA CẤP"_s);
    if (granted)
        restFocus(*this, *m_request);
    m_request->setVisible(!granted);
}

}  // namespace tralio
