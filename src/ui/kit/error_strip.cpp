#include "ui/kit/error_strip.h"

#include "ui/kit/button.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/painting.h"
#include "ui/kit/stack.h"
#include "ui/kit/theme.h"

using namespace Qt::StringLiterals;

namespace tralio {

ErrorStrip::ErrorStrip(QWidget* parent)
    : QWidget(parent), m_message(new Label({}, text::caption, ColorRole::red)) {
    m_message->setWraps();
    auto* icon = new IconView({.name = u"exclamationmark.circle.fill"_s, .pointSize = 13}, ColorRole::red);
    auto* close = new Button(button::close, {.icon = u"xmark"_s});
    close->setSpokenCaption(u"Đóng thông báo lỗi"_s);
    connect(close, &Button::clicked, this, &ErrorStrip::closeRequested);

    // The button is higher than a line of text. The label starts 2 px lower, so that a strip with one line is
    // 32 high.
    constexpr QMargins beside{0, 2, 0, 2};
    filled(this,
        row({.padding = {8, 6, 6, 6}},
            {column({.padding = beside}, {icon, Stretch{}}), Gap{6},
                StackItem(column({.padding = beside}, {m_message}), 1), Gap{2},
                column({}, {close, Stretch{}})}));
}

void ErrorStrip::setMessage(const QString& message) {
    m_message->setText(beginningOfMessage(message));
    setAccessibleName(m_message->accessibleName());
}

void ErrorStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintFill(painter, rect(), radius::control, color(ColorRole::redTint));
}

}  // namespace tralio
