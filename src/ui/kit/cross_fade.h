#pragma once

#include <QPixmap>
#include <QPointer>

class QWidget;

namespace tralio {

/// Lets the looks that a widget had at construction fade away over those that it has at `start`. Clicks go to
/// what is there then. Without a motion, and for a widget that nobody sees, it does nothing.
class CrossFade final {
public:
    CrossFade(QWidget* widget, int milliseconds);

    void start();

private:
    QPointer<QWidget> m_widget;
    int m_duration;
    QPixmap m_former;
};

}  // namespace tralio
