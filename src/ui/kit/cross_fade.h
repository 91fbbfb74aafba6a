#pragma once

#include <QPixmap>
#include <QPointer>

class QWidget;

namespace tralio {

/// Fades from a widget's appearance at construction to its appearance at `start`. Clicks already reach the
/// new content. Does nothing with reduced motion or for an invisible widget.
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
