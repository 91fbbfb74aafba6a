#include "widget_support.h"

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

}  // namespace tralio
