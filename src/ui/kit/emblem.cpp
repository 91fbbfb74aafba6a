#include "ui/kit/emblem.h"

#include "ui/kit/icon.h"
#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QBrush diagonal(const QRectF& area, ColorRole start, ColorRole end) {
    QLinearGradient gradient(area.topLeft(), area.bottomRight());
    gradient.setColorAt(0, color(start));
    gradient.setColorAt(1, color(end));
    return gradient;
}

}  // namespace

Emblem::Emblem(int diameter, int iconSize, QWidget* parent) : QWidget(parent), m_iconSize(iconSize) {
    setFixedSize(diameter, diameter);
}

void Emblem::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paintFill(painter, rect(), width() / 2.0, diagonal(rect(), ColorRole::emblemStart, ColorRole::emblemEnd));

    const Icon icon{u"character.bubble.fill"_s, m_iconSize};
    QPixmap bubble = iconPixmap(icon, Qt::black, devicePixelRatioF());
    const QRect box(0, 0, icon.box(), icon.box());
    QPainter colouring(&bubble);
    colouring.setCompositionMode(QPainter::CompositionMode_SourceIn);
    colouring.fillRect(box, diagonal(box, ColorRole::accentIcon, ColorRole::gradientEnd));
    colouring.end();
    painter.drawPixmap((width() - box.width()) / 2, (height() - box.height()) / 2, bubble);
}

}  // namespace tralio
