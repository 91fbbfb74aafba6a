#pragma once

#include <QImage>
#include <QRect>

#include "programs/snip/x_picture.h"

namespace tralio {

/// A copy of the screen as of construction or the last `freeze()`, kept in the X server. The overlay shows
/// it, and the picture is cut out of it. Both only before any window of ours is mapped.
class FrozenScreen final {
public:
    explicit FrozenScreen(const XDisplay& display);

    /// Copies the screen again; only before any window of ours is mapped. Does not wait for the server.
    void freeze();

    [[nodiscard]] QSize size() const { return m_bright.size(); }
    [[nodiscard]] const XPicture& bright() const { return m_bright; }
    [[nodiscard]] const XPicture& dimmed() const { return m_dimmed; }

    /// The pixels of a part of the screen. Throws std::runtime_error when the server does not give them.
    [[nodiscard]] QImage cut(const QRect& part) const;

private:
    const XDisplay& m_display;
    XPicture m_bright;
    XPicture m_dimmed;
};

}  // namespace tralio
