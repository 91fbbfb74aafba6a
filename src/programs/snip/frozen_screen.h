#pragma once

#include <QImage>
#include <QRect>

#include "programs/snip/x_picture.h"

namespace tralio {

/// The screen as it was when this was made or last renewed, kept in the server: what the overlay shows and
/// the picture is cut from. Both only before any window of ours appears.
class FrozenScreen final {
public:
    explicit FrozenScreen(const XDisplay& display);

    /// Takes the screen as it is now; only before any window of ours appears. Asks without waiting for an
    /// answer.
    void freeze();

    [[nodiscard]] QSize size() const { return m_bright.size(); }
    [[nodiscard]] const XPicture& bright() const { return m_bright; }
    [[nodiscard]] const XPicture& dimmed() const { return m_dimmed; }

    /// The pixels of a part. Throws std::runtime_error when the server does not give them.
    [[nodiscard]] QImage cut(const QRect& part) const;

private:
    const XDisplay& m_display;
    XPicture m_bright;
    XPicture m_dimmed;
};

}  // namespace tralio
