#pragma once

#include <QRect>
#include <QRegion>

#include <optional>
#include <vector>

#include "programs/snip/frozen_screen.h"

namespace tralio {

/// The window over the whole screen: the frozen screen, dimmed outside the rectangle. It bypasses the window
/// manager, and raises itself above windows that come later.
class Overlay final {
public:
    /// A picture on top: a caption or a handle.
    struct Mark {
        const XPicture* picture;
        QPoint place;
        double opacity = 1;

        [[nodiscard]] QRect area() const { return {place, picture->size()}; }
    };
    struct Scene {
        std::optional<QRect> area;
        int line = 1;  ///< width of the rectangle's edge, which lies outside the rectangle
        std::vector<Mark> marks;
    };

    Overlay(const XDisplay& display, const FrozenScreen& screen);
    Overlay(const Overlay&) = delete;
    Overlay& operator=(const Overlay&) = delete;
    ~Overlay();

    /// Maps the window; the dimmed screen is its background, so it never shows anything else.
    void show();
    void draw(const Scene& scene);
    /// To be called with every event of the connection.
    void handle(const xcb_generic_event_t& event);

private:
    void copyToWindow(const QRect& part);

    const XDisplay& m_display;
    const FrozenScreen& m_screen;
    XPicture m_frame;  ///< the content of the window
    xcb_window_t m_window;
    xcb_gcontext_t m_context;
    QRegion m_area;   ///< of the rectangle, as last drawn
    QRegion m_marks;  ///< the area of the marks and the edge, as last drawn
    int m_raises = 0;
};

}  // namespace tralio
