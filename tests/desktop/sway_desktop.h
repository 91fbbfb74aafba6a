#pragma once

#include <QJsonObject>
#include <QRect>

#include "desktop/session_settings.h"
#include "desktop/test_session.h"
#include "desktop/virtual_pointer.h"
#include "platform/linux/wayland/virtual_keyboard.h"

namespace tralio {

/// A Wayland session on a compositor without a screen, with a keyboard and a pointer of the test's own, and
/// with the program's actions bound to keys as its users bind them. The compositor refuses to run as root, so
/// that the whole session is an ordinary user's.
class SwayDesktop final : public TestSession {
public:
    enum class Xwayland { present, absent };

    explicit SwayDesktop(Xwayland xwayland, const SessionSettings& settings = {});

    [[nodiscard]] VirtualPointer& pointer() { return *m_pointer; }

    void pressTextHotKey() const override;
    void pressCaptureHotKey() const;
    /// Presses keys, by evdev code, in their order, and lets them go.
    void press(const std::vector<quint32>& keys) const;
    void click(const QPoint& place);
    /// Presses the button, moves, and lets go.
    void drag(const QPoint& from, const QPoint& to);

    /// Makes a window the focused one, by its application id; false when it does not come.
    [[nodiscard]] bool bringToFront(const QString& applicationId) const;
    /// Where a window is, by its title; empty while it is not there.
    [[nodiscard]] QRect windowArea(const QString& title) const;
    /// Where a screen is, by its name.
    [[nodiscard]] QRect outputArea(const QString& name) const;
    [[nodiscard]] QString focusedWindow() const;
    /// Whether a window, by its title, is one of Xwayland's.
    [[nodiscard]] bool isOnXwayland(const QString& title) const;

    /// Whether a program of this name runs in this session.
    [[nodiscard]] bool isRunning(const QString& program) const;

private:
    void startCompositor(Xwayland xwayland, const SessionSettings& settings);
    /// The first window that has this value; empty where none has.
    [[nodiscard]] QJsonObject windowWith(const char* key, const QJsonValue& value) const;

    std::unique_ptr<WaylandConnection> m_connection;
    std::unique_ptr<VirtualKeyboard> m_keyboard;
    std::unique_ptr<VirtualPointer> m_pointer;
};

}  // namespace tralio
