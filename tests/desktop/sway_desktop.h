#pragma once

#include <QJsonObject>
#include <QRect>

#include <linux/input-event-codes.h>

#include "desktop/test_session.h"

namespace tralio {

class VirtualKeyboard;
class WaylandConnection;

/// How the session is configured.
struct SessionSettings {
    /// Use sway's default configuration. Most tests are easier with focus by click, no frames, and a plain
    /// background for screenshots.
    bool asShipped = false;
    int outputs = 1;
};

/// A headless Wayland session on sway, with a keyboard and a pointer that the test controls, and with the
/// program's actions bound to keys, as its users bind them. sway refuses to run as root, so the whole session
/// runs as an ordinary user.
class SwayDesktop final : public TestSession {
public:
    enum class Xwayland { present, absent };

    explicit SwayDesktop(Xwayland xwayland, const SessionSettings& settings = {});
    ~SwayDesktop() override;

    void pressTextHotKey() const override { press({KEY_LEFTMETA, KEY_LEFTSHIFT, KEY_D}); }
    void pressCaptureHotKey() const { press({KEY_LEFTMETA, KEY_LEFTSHIFT, KEY_S}); }
    /// Presses keys, given as evdev codes, in order, and releases them.
    void press(const std::vector<quint32>& keys) const;
    void movePointer(const QPoint& place);
    void click(const QPoint& place);
    /// Presses the button, moves the pointer, and releases the button.
    void drag(const QPoint& from, const QPoint& to);

    /// Focuses a window, by its application id. Returns false if it does not appear.
    [[nodiscard]] bool bringToFront(const QString& applicationId) const;
    /// The rectangle of a window, by its title; empty if there is none.
    [[nodiscard]] QRect windowArea(const QString& title) const { return areaOf(windowWith("name", title)); }
    /// The rectangle of a screen, by its name.
    [[nodiscard]] QRect outputArea(const QString& name) const;
    [[nodiscard]] QString focusedWindow() const { return windowWith("focused", true)[u"name"_s].toString(); }
    /// Whether the window with this title is an Xwayland window.
    [[nodiscard]] bool isOnXwayland(const QString& title) const {
        return windowWith("name", title)[u"shell"_s] == u"xwayland"_s;
    }

    /// Whether a program of this name runs in this session.
    [[nodiscard]] bool isRunning(const QString& program) const;

private:
    class Pointer;

    /// The rectangle of a window or screen in sway's tree.
    [[nodiscard]] static QRect areaOf(const QJsonObject& node);
    void startCompositor(Xwayland xwayland, const SessionSettings& settings);
    /// The first window in which `key` has this value; empty if there is none.
    [[nodiscard]] QJsonObject windowWith(const char* key, const QJsonValue& value) const;

    std::unique_ptr<WaylandConnection> m_connection;
    std::unique_ptr<VirtualKeyboard> m_keyboard;
    std::unique_ptr<Pointer> m_pointer;
};

}  // namespace tralio
