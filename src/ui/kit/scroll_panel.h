#pragma once

#include <QScrollArea>

namespace tralio {

/// A panel that is taller than its viewport: as wide as the viewport, and scrolled by wheel, touchpad, Page
/// keys and the overlay thumb. Scrolls the focused widget into view.
class ScrollPanel final : public QScrollArea {
    Q_OBJECT

public:
    /// Takes ownership of the content.
    explicit ScrollPanel(QWidget* content, QWidget* parent = nullptr);

    /// Lays the content out and adopts its height now, instead of with the next event.
    void layOut();

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace tralio
