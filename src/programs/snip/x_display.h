#pragma once

#include <QPoint>
#include <QSize>
#include <QString>

#include <memory>
#include <vector>
#include <xcb/render.h>
#include <xcb/xcb.h>

#include "platform/linux/x11/x11_connection.h"
#include "programs/snip/monitor_layout.h"

namespace tralio {

/// The connection to the X server, with its screen and RENDER formats. The constructor throws
/// std::runtime_error, with a message for the user, if something is missing.
class XDisplay final {
public:
    /// Connects to $DISPLAY.
    XDisplay();
    XDisplay(const XDisplay&) = delete;
    XDisplay& operator=(const XDisplay&) = delete;
    ~XDisplay() = default;

    [[nodiscard]] xcb_connection_t* xcb() const { return m_connection.get(); }
    [[nodiscard]] const xcb_screen_t& screen() const { return *m_screen; }
    [[nodiscard]] xcb_window_t root() const { return m_screen->root; }
    [[nodiscard]] QSize size() const { return {m_screen->width_in_pixels, m_screen->height_in_pixels}; }

    // RENDER formats: the screen's, and those of images with and without alpha.
    [[nodiscard]] xcb_render_pictformat_t screenFormat() const { return m_screenFormat; }
    [[nodiscard]] xcb_render_pictformat_t argbFormat() const { return m_argbFormat; }
    [[nodiscard]] xcb_render_pictformat_t rgbFormat() const { return m_rgbFormat; }

    /// The monitors with their scales; the whole screen as one if the server reports none.
    [[nodiscard]] MonitorLayout monitors() const;
    [[nodiscard]] QPoint pointer() const;

    void flush() const { xcb_flush(xcb()); }
    /// Throws when the connection is lost.
    void check() const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const;
    };

    void refuseWayland() const;
    void findFormats();
    [[nodiscard]] QString resources() const;
    [[nodiscard]] QString atomName(xcb_get_atom_name_cookie_t cookie) const;

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    const xcb_screen_t* m_screen = nullptr;
    xcb_render_pictformat_t m_screenFormat = XCB_NONE;
    xcb_render_pictformat_t m_argbFormat = XCB_NONE;
    xcb_render_pictformat_t m_rgbFormat = XCB_NONE;
};

}  // namespace tralio
