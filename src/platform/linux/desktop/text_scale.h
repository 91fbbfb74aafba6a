#pragma once

#include <QByteArray>
#include <QSize>

#include <functional>
#include <optional>
#include <vector>

namespace tralio {

/// Enlarges everything by the size of text that the user has chosen for the desktop, while the application
/// object is made: the window grows with its text, and scrolls where the screen is too small. X programs are
/// told by Xft.dpi on the desktops that have a settings daemon, which the toolkit heeds by itself; this is
/// for all the others. A scale that is chosen while the program runs counts from its next start, since the
/// toolkit takes one only then.
///
/// The scale is for this process: programs that it starts must not inherit it.
class TextScale final {
public:
    /// `compositorScreens` is asked where the windows are Wayland's own, for sizes in their units.
    explicit TextScale(const std::function<std::vector<QSize>()>& compositorScreens);
    TextScale(const TextScale&) = delete;
    TextScale& operator=(const TextScale&) = delete;
    /// To be called once the application object is there.
    ~TextScale();

    /// Keeps what the desktop's portal tells for the next start, which may come before the portal's; 1 where
    /// it tells nothing.
    static void remember(double portalScale);

private:
    std::optional<QByteArray> m_former;  ///< the variable's value, if it was changed
};

}  // namespace tralio
