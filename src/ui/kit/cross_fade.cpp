#include "ui/kit/cross_fade.h"

#include <QPainter>
#include <QVariantAnimation>
#include <QWidget>

#include "ui/kit/theme.h"

namespace tralio {
namespace {

class FadingPicture final : public QWidget {
public:
    FadingPicture(QWidget* parent, QPixmap picture, int duration)
        : QWidget(parent), m_picture(std::move(picture)) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setGeometry(parent->rect());
        m_opacity.setStartValue(1.0);
        m_opacity.setEndValue(0.0);
        m_opacity.setDuration(duration);
        m_opacity.setEasingCurve(QEasingCurve::InOutQuad);
        connect(&m_opacity, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
        connect(&m_opacity, &QVariantAnimation::finished, this, &QObject::deleteLater);
        m_opacity.start();
        show();
        raise();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setOpacity(m_opacity.currentValue().toReal());
        painter.drawPixmap(0, 0, m_picture);
    }

private:
    QPixmap m_picture;
    QVariantAnimation m_opacity;
};

}  // namespace

CrossFade::CrossFade(QWidget* widget, int milliseconds)
    : m_widget(widget), m_duration(widget->isVisible() ? Theme::current().duration(milliseconds) : 0) {
    if (m_duration == 0)
        return;
    // Panels do not paint the window's background themselves.
    m_former = QPixmap(widget->size() * widget->devicePixelRatioF());
    m_former.setDevicePixelRatio(widget->devicePixelRatioF());
    m_former.fill(color(ColorRole::window));
    widget->render(&m_former, {}, {}, QWidget::DrawChildren);
}

void CrossFade::start() {
    if (m_duration > 0 && m_widget)
        new FadingPicture(m_widget, m_former, m_duration);
}

}  // namespace tralio
