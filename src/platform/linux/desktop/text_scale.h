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
/// the others. A scale that is chosen while the program runs takes effect at its next start, since Qt reads
/// it only once.
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

    /// Stores the scale that the desktop's portal reports, for the next start, which may happen before the
    /// portal runs; 1 if it reports none.
    static void remember(double portalScale);

private:
    std::optional<QByteArray> m_former;  ///< the variable's former value, if it was changed
};

}  // namespace tralio
