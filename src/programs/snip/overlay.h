#pragma once

#include <QRect>
#include <QRegion>

#include <optional>
#include <vector>

#include "programs/snip/frozen_screen.h"

namespace tralio {

/// The window over the whole screen: the frozen screen, dimmed but for the rectangle. The window manager has
/// no part in it, and what else comes up is put below it.
class Overlay final {
public:
    /// Something that lies on top: a caption, a handle.
    struct Mark {
        const XPicture* picture;
        QPoint place;
        double opacity = 1;

        [[nodiscard]] QRect area() const { return {place, picture->size()}; }
    };
    struct Scene {
        std::optional<QRect> area;
        int line = 1;  ///< breadth of the rectangle's edge, which lies outside of it
        std::vector<Mark> marks;
    };

    Overlay(const XDisplay& display, const FrozenScreen& screen);
    Overlay(const Overlay&) = delete;
    Overlay& operator=(const Overlay&) = delete;
    ~Overlay();

    /// The dimmed screen is there with the window's first pixel.
    void show();
    void draw(const Scene& scene);
    /// For every event of the connection.
    void handle(const xcb_generic_event_t& event);

private:
    void copyToWindow(const QRect& part);

    const XDisplay& m_display;
    const FrozenScreen& m_screen;
    XPicture m_frame;  ///< what the window shows
    xcb_window_t m_window;
    xcb_gcontext_t m_context;
    QRegion m_area;   ///< of the rectangle, as last drawn
    QRegion m_marks;  ///< whatever lies on top, as last drawn
    int m_raises = 0;
};

}  // namespace tralio
