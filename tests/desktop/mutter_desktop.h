#pragma once

#include "desktop/test_session.h"

namespace tralio {

/// A session of GNOME's compositor without a screen and without Xwayland, with a keyboard of the test's own.
/// It gives programs no data control, and tells nobody of other programs' windows. A hot key is a call on the
/// bus, as its users bind them. The compositor is an ordinary user's.
class MutterDesktop final : public TestSession {
public:
    MutterDesktop();

    void pressTextHotKey() const override;
    /// Presses keys, by evdev code, in their order, and lets them go.
    void press(const std::vector<quint32>& keys) const;

private:
    void startCompositor();
    void startRemoteInput();
    void input(const QString& method, const QVariantList& arguments) const;

    QString m_remote;  ///< the session of remote input, an object of the compositor's
};

}  // namespace tralio
