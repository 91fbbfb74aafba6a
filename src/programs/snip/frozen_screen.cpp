#include "programs/snip/frozen_screen.h"

#include <QColor>

#include <stdexcept>

namespace tralio {
namespace {

constexpr QColor dimness(10, 12, 16, 128);

}  // namespace

FrozenScreen::FrozenScreen(const XDisplay& display)
    : m_display(display),
      m_bright(XPicture::likeScreen(display, display.size())),
      m_dimmed(XPicture::likeScreen(display, display.size())) {}

void FrozenScreen::freeze() {
    const QRect whole(QPoint(), size());
    const quint32 withWindows = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
    const xcb_render_picture_t screen = xcb_generate_id(m_display.xcb());
    xcb_render_create_picture(m_display.xcb(), screen, m_display.root(), m_display.screenFormat(),
        XCB_RENDER_CP_SUBWINDOW_MODE, &withWindows);
    m_bright.copyFrom(screen, whole);
    xcb_render_free_picture(m_display.xcb(), screen);

    m_dimmed.copyFrom(m_bright.picture(), whole);
    m_dimmed.fill({&whole, 1}, dimness);
}

QImage FrozenScreen::cut(const QRect& part) const {
    XPicture pixels = XPicture::withoutAlpha(m_display, part.size());
    xcb_render_composite(m_display.xcb(), XCB_RENDER_PICT_OP_SRC, m_bright.picture(), XCB_NONE,
        pixels.picture(), qint16(part.x()), qint16(part.y()), 0, 0, 0, 0, quint16(part.width()),
        quint16(part.height()));
    constexpr quint32 allPlanes = ~0U;
    const XcbPtr<xcb_get_image_reply_t> reply{xcb_get_image_reply(m_display.xcb(),
        xcb_get_image(m_display.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixels.pixmap(), 0, 0,
            quint16(part.width()), quint16(part.height()), allPlanes),
        nullptr)};
    const qsizetype needed = qsizetype(part.width()) * part.height() * 4;
    if (!reply || xcb_get_image_data_length(reply.get()) < needed)
        throw std::runtime_error("the X server does not give the picture");
    const QImage image(xcb_get_image_data(reply.get()), part.width(), part.height(), QImage::Format_RGB32);
    return image.copy();
}

}  // namespace tralio
