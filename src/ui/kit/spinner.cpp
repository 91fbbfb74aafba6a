#include "ui/kit/spinner.h"

#include <QPainter>
#include <QTimerEvent>

#include "ui/kit/theme.h"

namespace tralio {
namespace {

constexpr int spokes = 8;
constexpr int stepTime = 100;  // milliseconds
constexpr double faintest = 0.22;

}  // namespace

Spinner::Spinner(int box, ColorRole role, QWidget* parent) : QWidget(parent), m_box(box), m_role(role) {
    setFixedSize(box, box);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void Spinner::setColor(ColorRole role) {
    m_role = role;
    update();
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(width() / 2.0, height() / 2.0);
    const double unit = m_box / 24.0;
    for (int spoke = 0; spoke < spokes; ++spoke) {
        // The spoke just reached is the brightest; the others fade with age.
        const int age = (m_step - spoke + spokes) % spokes;
        painter.save();
        painter.rotate(360.0 / spokes * spoke);
        painter.setOpacity(1 - (1 - faintest) * age / (spokes - 1));
        painter.setPen(QPen(color(m_role), 2.1 * unit, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -5.4 * unit), QPointF(0, -10.4 * unit));
        painter.restore();
    }
}

void Spinner::showEvent(QShowEvent* event) {
    m_step = 0;
    m_timer.start(stepTime, this);
    QWidget::showEvent(event);
}

void Spinner::hideEvent(QHideEvent* event) {
    m_timer.stop();
    QWidget::hideEvent(event);
}

void Spinner::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_timer.timerId()) {
        m_step = (m_step + 1) % spokes;
        update();
    }
}

}  // namespace tralio
