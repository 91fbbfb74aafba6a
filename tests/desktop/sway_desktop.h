#pragma once

#include <QJsonObject>
#include <QRect>

#include <linux/input-event-codes.h>

#include "desktop/test_session.h"

namespace tralio {

class VirtualKeyboard;
class WaylandConnection;

/// How the desktop of a test is set.
struct SessionSettings {
    /// What a user finds who has changed nothing. Most tests are better off with the focus where one clicks,
    /// no frames, and a plain colour to take pictures of.
    bool asShipped = false;
    int outputs = 1;
};

/// A Wayland session on a compositor without a screen, with a keyboard and a pointer of the test's own, and
/// with the program's actions bound to keys as its users bind them. The compositor refuses to run as root, so
/// that the whole session is an ordinary user's.
class SwayDesktop final : public TestSession {
public:
    enum class Xwayland { present, absent };

    explicit SwayDesktop(Xwayland xwayland, const SessionSettings& settings = {});
    ~SwayDesktop() override;

    void pressTextHotKey() const override { press({KEY_LEFTMETA, KEY_LEFTSHIFT, KEY_D}); }
    void pressCaptureHotKey() const { press({KEY_LEFTMETA, KEY_LEFTSHIFT, KEY_S}); }
    /// Presses keys, by evdev code, in their order, and lets them go.
    void press(const std::vector<quint32>& keys) const;
    void movePointer(const QPoint& place);
    void click(const QPoint& place);
    /// Presses the button, moves, and lets go.
    void drag(const QPoint& from, const QPoint& to);

    /// Makes a window the focused one, by its application id; false when it does not come.
    [[nodiscard]] bool bringToFront(const QString& applicationId) const;
    /// Where a window is, by its title; empty while it is not there.
    [[nodiscard]] QRect windowArea(const QString& title) const { return areaOf(windowWith("name", title)); }
    /// Where a screen is, by its name.
    [[nodiscard]] QRect outputArea(const QString& name) const;
    [[nodiscard]] QString focusedWindow() const { return windowWith("focused", true)[u"name"_s].toString(); }
    /// Whether a window, by its title, is one of Xwayland's.
    [[nodiscard]] bool isOnXwayland(const QString& title) const {
        return windowWith("name", title)[u"shell"_s] == u"xwayland"_s;
    }

    /// Whether a program of this name runs in this session.
    [[nodiscard]] bool isRunning(const QString& program) const;

private:
    class Pointer;

    /// Of a window or a screen.
    [[nodiscard]] static QRect areaOf(const QJsonObject& node);
    void startCompositor(Xwayland xwayland, const SessionSettings& settings);
    /// The first window that has this value; empty where none has.
    [[nodiscard]] QJsonObject windowWith(const char* key, const QJsonValue& value) const;

    std::unique_ptr<WaylandConnection> m_connection;
    std::unique_ptr<VirtualKeyboard> m_keyboard;
    std::unique_ptr<Pointer> m_pointer;
};

}  // namespace tralio
