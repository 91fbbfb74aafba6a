#include "widget_support.h"

#include <QPainter>

#include "ui/kit/painting.h"

namespace tralio {

void showActive(QWidget& widget) {
    widget.show();
    widget.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&widget));
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

QRect inkOf(const TextStyle& style, const QString& text) {
    QImage blank(300, 100, QImage::Format_ARGB32_Premultiplied);
    blank.fill(Qt::white);
    QImage inked = blank;
    QPainter painter(&inked);
    paintText(painter, inked.rect(), style, Qt::black, text);
    painter.end();
    return difference(blank, inked);
}

}  // namespace tralio
