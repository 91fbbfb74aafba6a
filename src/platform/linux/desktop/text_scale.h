#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QSize>

#include <functional>
#include <optional>
#include <vector>

namespace tralio {

/// Scales the whole interface by the text size that the user has chosen for the desktop: the window grows
/// with its text, and scrolls where the screen is too small. Active while the application object is made. On
/// desktops with an X settings daemon the scale comes by Xft.dpi, which Qt obeys by itself; this is for all
/// the others. Qt reads a scale only once, when the application object is made. The portal is asked for it
/// only if it has never told before, since its answer takes longer than all else before that moment: a scale
/// that was chosen since the last end of the program takes effect at the start after the next.
///
/// The environment variable is for this process: programs that it starts must not inherit it.
class TextScale final {
public:
    /// `session`: the session bus. `compositorScreens` is called where our windows are native Wayland ones;
    /// it returns sizes in their units.
    TextScale(const QDBusConnection& session, const std::function<std::vector<QSize>()>& compositorScreens);
    TextScale(const TextScale&) = delete;
    TextScale& operator=(const TextScale&) = delete;
    /// Destroy it once the application object exists.
    ~TextScale();

    /// Stores the scale that the desktop's portal reports, 1 if it reports none, for the next start. What is
    /// no scale is ignored.
    static void remember(double portalScale);

private:
    std::optional<QByteArray> m_former;  ///< the variable's former value, if it was changed
};

}  // namespace tralio
