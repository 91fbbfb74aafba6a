#pragma once

#include <QScrollArea>

namespace tralio {

/// A panel that is taller than its room: as wide as the room, and scrolled by wheel, touchpad, Page keys and
/// the thumb over it. Brings what gets the keyboard focus into sight.
class ScrollPanel final : public QScrollArea {
    Q_OBJECT

public:
    /// Takes the content over.
    explicit ScrollPanel(QWidget* content, QWidget* parent = nullptr);

    /// Lays the content out and takes over its height at once, and not with the next event.
    void layOut();

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace tralio
