#include "programs/snip/x_picture.h"

#include <QColor>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tralio {
namespace {

constexpr quint8 opaqueDepth = 24;
constexpr quint8 alphaDepth = 32;

std::vector<xcb_rectangle_t> allToX(std::span<const QRect> rectangles) {
    std::vector<xcb_rectangle_t> result;
    for (const QRect& rectangle : rectangles)
        result.push_back(toX(rectangle));
    return result;
}

/// RENDER takes colours with premultiplied alpha.
xcb_render_color_t toX(const QColor& color) {
    const auto channel = [&color](
                             float value) { return quint16(std::lround(value * color.alphaF() * 0xffff)); };
    return {channel(color.redF()), channel(color.greenF()), channel(color.blueF()), channel(1)};
}

}  // namespace

xcb_rectangle_t toX(const QRect& rectangle) {
    return {qint16(rectangle.x()), qint16(rectangle.y()), quint16(rectangle.width()),
        quint16(rectangle.height())};
}

XPicture XPicture::likeScreen(const XDisplay& display, QSize size) {
    return {display, size, display.screen().root_depth, display.screenFormat()};
}

XPicture XPicture::withoutAlpha(const XDisplay& display, QSize size) {
    return {display, size, opaqueDepth, display.rgbFormat()};
}

XPicture XPicture::fromImage(const XDisplay& display, const QImage& image) {
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    XPicture result(display, pixels.size(), alphaDepth, display.argbFormat());
    const xcb_gcontext_t context = xcb_generate_id(display.xcb());
    xcb_create_gc(display.xcb(), context, result.m_pixmap, 0, nullptr);
    // Only captions and marks, which are far below the maximum size of a request.
    xcb_put_image(display.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, result.m_pixmap, context, quint16(pixels.width()),
        quint16(pixels.height()), 0, 0, 0, alphaDepth, quint32(pixels.sizeInBytes()), pixels.constBits());
    xcb_free_gc(display.xcb(), context);
    return result;
}

XPicture::XPicture(const XDisplay& display, QSize size, quint8 depth, xcb_render_pictformat_t format)
    : m_display(&display),
      m_size(size),
      m_pixmap(xcb_generate_id(display.xcb())),
      m_picture(xcb_generate_id(display.xcb())) {
    xcb_create_pixmap(
        display.xcb(), depth, m_pixmap, display.root(), quint16(size.width()), quint16(size.height()));
    xcb_render_create_picture(display.xcb(), m_picture, m_pixmap, format, 0, nullptr);
}

XPicture::XPicture(XPicture&& other) noexcept
    : m_display(other.m_display),
      m_size(other.m_size),
      m_pixmap(std::exchange(other.m_pixmap, XCB_NONE)),
      m_picture(std::exchange(other.m_picture, XCB_NONE)) {}

XPicture& XPicture::operator=(XPicture&& other) noexcept {
    std::swap(m_display, other.m_display);
    std::swap(m_size, other.m_size);
    std::swap(m_pixmap, other.m_pixmap);
    std::swap(m_picture, other.m_picture);
    return *this;
}

XPicture::~XPicture() {
    if (m_pixmap == XCB_NONE)
        return;
    xcb_render_free_picture(m_display->xcb(), m_picture);
    xcb_free_pixmap(m_display->xcb(), m_pixmap);
}

void XPicture::clipTo(std::span<const QRect> region) {
    const auto rectangles = allToX(region);
    xcb_render_set_picture_clip_rectangles(
        m_display->xcb(), m_picture, 0, 0, quint32(rectangles.size()), rectangles.data());
}

void XPicture::liftClip() {
    const quint32 none = XCB_NONE;
    xcb_render_change_picture(m_display->xcb(), m_picture, XCB_RENDER_CP_CLIP_MASK, &none);
}

void XPicture::copyFrom(xcb_render_picture_t source, const QRect& part) {
    const xcb_rectangle_t area = toX(part);
    xcb_render_composite(m_display->xcb(), XCB_RENDER_PICT_OP_SRC, source, XCB_NONE, m_picture, area.x,
        area.y, 0, 0, area.x, area.y, area.width, area.height);
}

void XPicture::lay(const XPicture& other, QPoint place, double opacity) {
    xcb_render_picture_t mask = XCB_NONE;
    if (opacity < 1) {
        mask = xcb_generate_id(m_display->xcb());
        xcb_render_create_solid_fill(m_display->xcb(), mask, toX(QColor::fromRgbF(1, 1, 1, float(opacity))));
    }
    xcb_render_composite(m_display->xcb(), XCB_RENDER_PICT_OP_OVER, other.m_picture, mask, m_picture, 0, 0, 0,
        0, qint16(place.x()), qint16(place.y()), quint16(other.m_size.width()),
        quint16(other.m_size.height()));
    if (mask != XCB_NONE)
        xcb_render_free_picture(m_display->xcb(), mask);
}

void XPicture::fill(std::span<const QRect> areas, const QColor& color) {
    const auto rectangles = allToX(areas);
    xcb_render_fill_rectangles(m_display->xcb(), XCB_RENDER_PICT_OP_OVER, m_picture, toX(color),
        quint32(rectangles.size()), rectangles.data());
}

}  // namespace tralio
