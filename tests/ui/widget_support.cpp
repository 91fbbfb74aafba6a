#include "widget_support.h"

#include <QEnterEvent>
#include <QPainter>

#include "ui/kit/painting.h"

namespace tralio {

void showActive(QWidget& widget) {
    widget.show();
    widget.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&widget));
}

void enter(QWidget& widget) {
    QEnterEvent event({5, 5}, {5, 5}, {5, 5});
    QApplication::sendEvent(&widget, &event);
}

void leave(QWidget& widget) {
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&widget, &event);
}

QImage pictureOf(QWidget& widget) {
    QImage picture(widget.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::white);
    widget.render(&picture);
    return picture;
}

QRect difference(const QImage& one, const QImage& other) {
    QRect box;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x)
            if (one.pixel(x, y) != other.pixel(x, y))
                box |= QRect(x, y, 1, 1);
    }
    return box;
}

QRect inkOf(const QString& text, const TextStyle& style) {
    QImage blank(300, 100, QImage::Format_ARGB32_Premultiplied);
    blank.fill(Qt::white);
    QImage inked = blank;
    QPainter painter(&inked);
    paintText(painter, inked.rect(), style, Qt::black, text);
    painter.end();
    return difference(blank, inked);
}

}  // namespace tralio
