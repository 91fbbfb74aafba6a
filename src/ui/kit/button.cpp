#include "ui/kit/button.h"

#include <QPainter>

#include <algorithm>

#include "ui/kit/painting.h"
#include "ui/kit/spinner.h"

namespace tralio {
namespace {

constexpr double disabledOpacity = 0.4;

}  // namespace

Button::Button(const ButtonStyle& style, const Face& face, QWidget* parent)
    : Control(face.title, parent), m_style(style), m_iconName(face.icon) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Button::setIconName(const QString& name) {
    if (m_iconName != name) {
        m_iconName = name;
        updateGeometry();
        update();
    }
}

void Button::setWeight(Weight weight) {
    m_style.text.weight = weight;
    updateGeometry();
    update();
}

void Button::setColor(ColorRole role) {
    m_style.color = role;
    update();
}

void Button::setIconColor(ColorRole role) {
    m_style.iconColor = role;
    update();
}

void Button::stretch() {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Button::setBusy(bool busy) {
    if (busy == isBusy())
        return;
    Control::setBusy(busy);
    delete m_spinner;
    m_spinner = nullptr;
    if (busy) {
        m_spinner = new Spinner(
            m_style.spinner, m_style.isSolid() ? ColorRole::accentText : ColorRole::accentIcon, this);
        placeSpinner();
        m_spinner->show();
    }
}

TextStyle Button::titleStyle() const {
    return isChecked() ? m_style.text.with(Weight::bold) : m_style.text;
}

int Button::leadWidth() const {
    if (m_spinner != nullptr)
        return m_style.spinner;
    return m_iconName.isEmpty() ? 0 : Icon{m_iconName, m_style.iconSize}.box();
}

int Button::gap() const {
    return leadWidth() > 0 && !title().isEmpty() ? m_style.gap : 0;
}

int Button::contentWidth() const {
    return leadWidth() + gap() + textWidth(titleStyle(), title());
}

QSize Button::sizeHint() const {
    if (title().isEmpty())
        return {m_style.height, m_style.height};
    return {2 * m_style.padding + contentWidth(), m_style.height};
}

QSize Button::minimumSizeHint() const {
    return sizeHint();
}

QRect Button::leadArea() const {
    const int left = (width() - contentWidth()) / 2;
    return {m_style.iconTrails ? left + contentWidth() - leadWidth() : left, 0, leadWidth(), height()};
}

QRect Button::titleArea() const {
    const int start = (width() - contentWidth()) / 2;
    const int left = m_style.iconTrails ? start : start + leadWidth() + gap();
    return {left, 0, std::min(textWidth(titleStyle(), title()), width() - left), height()};
}

void Button::placeSpinner() {
    if (m_spinner != nullptr) {
        const QRect area = leadArea();
        m_spinner->move(area.left(), (height() - m_spinner->height()) / 2);
    }
}

void Button::resizeEvent(QResizeEvent* event) {
    placeSpinner();
    Control::resizeEvent(event);
}

QBrush Button::fill() const {
    if (m_style.fillEnd == ColorRole::none)
        return color(m_style.fill);
    QLinearGradient gradient(0, 0, width(), 0);
    gradient.setColorAt(0, color(m_style.fill));
    gradient.setColorAt(1, color(m_style.fillEnd));
    return gradient;
}

Button::Look Button::look() const {
    if (m_style.isSolid() && isBusy())
        return {color(ColorRole::accentBadge), {}, color(ColorRole::accentText)};
    if (m_style.isSolid() && !isEnabled())
        return {color(ColorRole::disabledFill), {}, color(ColorRole::disabledText)};
    if (isChecked()) {
        return {color(ColorRole::accentTint), color(ColorRole::accentTintActiveEdge),
            color(ColorRole::accentText)};
    }
    ColorRole ink = isBusy() ? ColorRole::secondary : m_style.color;
    // On the overlay of a button that has a fill the paler letters have too little contrast in the dark.
    if (ink == ColorRole::secondary && m_style.fill == ColorRole::button && isLive() && underMouse())
        ink = ColorRole::text;
    return {fill(), color(m_style.edge), color(ink)};
}

void Button::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled() && !m_style.isSolid() && !isBusy())
        painter.setOpacity(disabledOpacity);
    const QRectF area = rect();
    const Ground ground = m_style.isSolid() && isEnabled() && !isBusy() ? Ground::solid : Ground::neutral;
    const Look colors = look();
    paintFill(painter, area, m_style.radius, colors.fill);
    paintStateOverlay(painter, area, m_style.radius, ground);
    if (!showsFocusRing() && m_style.edge != ColorRole::none)
        paintEdge(painter, area, m_style.radius, 1, colors.edge);
    paintFocusRing(painter, area, m_style.radius, ground);

    if (m_spinner == nullptr) {
        const QColor ink = m_style.iconColor == ColorRole::none ? colors.content : color(m_style.iconColor);
        paintIcon(painter, leadArea(), {m_iconName, m_style.iconSize, m_style.boldIcon}, ink);
    }
    // The edge is not part of the area for letters.
    paintText(painter, titleArea().adjusted(0, 1, 0, -1), titleStyle(), colors.content, title());
}

}  // namespace tralio
