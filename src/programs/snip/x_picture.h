#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>

#include <span>

#include "programs/snip/x_display.h"

namespace tralio {

/// A picture in the X server. Pictures as large as the screen stay there, so that neither showing the overlay
/// nor moving the pointer sends them through a socket.
class XPicture final {
public:
    /// In the screen's format; its content is undefined.
    [[nodiscard]] static XPicture likeScreen(const XDisplay& display, QSize size);
    /// With 8 bits each for red, green and blue, whatever the screen's format.
    [[nodiscard]] static XPicture withoutAlpha(const XDisplay& display, QSize size);
    /// A copy of an image with an alpha channel.
    [[nodiscard]] static XPicture fromImage(const XDisplay& display, const QImage& image);

    XPicture(XPicture&& other) noexcept;
    XPicture& operator=(XPicture&& other) noexcept;
    ~XPicture();

    [[nodiscard]] QSize size() const { return m_size; }
    [[nodiscard]] xcb_pixmap_t pixmap() const { return m_pixmap; }
    [[nodiscard]] xcb_render_picture_t picture() const { return m_picture; }

    /// Limits drawing to a region until `liftClip()`.
    void clipTo(std::span<const QRect> region);
    void liftClip();
    /// Copies a part of another picture of this screen, to the same place.
    void copyFrom(xcb_render_picture_t source, const QRect& part);
    /// Blends another picture over this one.
    void lay(const XPicture& other, QPoint place, double opacity = 1);
    void fill(std::span<const QRect> areas, const QColor& color);

private:
    XPicture(const XDisplay& display, QSize size, quint8 depth, xcb_render_pictformat_t format);

    const XDisplay* m_display;
    QSize m_size;
    xcb_pixmap_t m_pixmap;
    xcb_render_picture_t m_picture;
};

/// Converts to the protocol's type.
[[nodiscard]] xcb_rectangle_t toX(const QRect& rectangle);

}  // namespace tralio
