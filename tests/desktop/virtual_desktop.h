#pragma once

#include <QImage>
#include <QPoint>
#include <QSize>

#include "desktop/test_session.h"

namespace tralio {

/// A desktop of one test's own: an X server, a session bus with accessibility, a window manager and a tray,
/// in a new home folder. It ends what it started, by process, when it goes. One per process, since the
/// session bus becomes the process's own.
///
/// Failures to start throw std::runtime_error with what is missing.
class VirtualDesktop final : public TestSession {
public:
    enum class Tray { present, absent };

    explicit VirtualDesktop(Tray tray = Tray::present, const QSize& screen = {1280, 1024});

    /// Starts a compositor, so that windows may be translucent, and gives the screen a colour.
    void startCompositor();

    /// Another window manager takes the place of the one that runs; waits until it manages the windows.
    void replaceWindowManager(const QString& program, const QStringList& arguments);

    /// A panel of a real desktop at the upper edge, 32 high, with nothing in it but the plugin.
    void startPanel(const QString& plugin = {});

    /// Ends the window manager without a chance to tidy up.
    void killWindowManager();

    /// Starts a program and gives its window, of this class, once it is in front. Throws where it does not
    /// come.
    QString startInFront(
        const QString& windowClass, const QString& program, const QStringList& arguments = {});
    /// Starts an application that shows a text which it gives to nobody but by a copy; its window, in front.
    /// A silent one does not answer the accessibility bus either.
    QString startProbe(const QStringList& arguments) {
        return startInFront(u"selection-probe"_s, QStringLiteral(SELECTION_PROBE), arguments);
    }
    QString startSilentProbe(const QString& text);
    /// Starts a terminal in which a shell does this; its window, in front.
    QString startTerminal(const QString& commands);
    /// The visible window of a class, waited for until it is in front; empty when it does not come.
    QString bringToFront(const QString& windowClass) const;
    /// Starts a text editor with a text, all of it selected; its window, in front.
    QString selectInEditor(const QString& text);
    [[nodiscard]] bool isVisible(const QString& windowClass) const {
        return !xdotool(u"search --onlyvisible --class "_s + windowClass).isEmpty();
    }

    void pressTextHotKey() const override { press(u"super+shift+d"_s); }
    void press(const QString& keys) const { xdotool(u"key "_s + keys); }
    /// Holds keys down, in their order, or lets them go.
    void hold(const QStringList& keys) const { xdotool(u"keydown "_s + keys.join(u' ')); }
    void release(const QStringList& keys) const { xdotool(u"keyup "_s + keys.join(u' ')); }
    void type(const QString& text) const { run(u"xdotool"_s, {u"type"_s, u"--delay"_s, u"5"_s, text}); }
    /// Types a text and Return.
    void enter(const QString& text) const {
        type(text);
        press(u"Return"_s);
    }
    /// Clicks at a place of a window, given from its top left corner, or of the screen.
    void click(const QString& window, const QPoint& place, int times = 1) const;
    void click(const QPoint& place) const;
    void movePointer(const QPoint& place) const {
        xdotool(u"mousemove %1 %2"_s.arg(place.x()).arg(place.y()));
    }
    /// Presses the button at one place of the screen or of a window, moves, and lets go at another right
    /// after that.
    void drag(const QPoint& from, const QPoint& to, const QString& window = {}) const;
    [[nodiscard]] QString windowWithKeyboard() const { return xdotool(u"getactivewindow"_s); }

    void setClipboard(const QString& text);
    [[nodiscard]] QString clipboard() const {
        return run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s});
    }
    /// What was selected last, in whatever application.
    [[nodiscard]] QString primary() const {
        return run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"primary"_s});
    }

    /// The whole screen, also as a PNG at `path`.
    QImage screenshot(const QString& path) const;
    [[nodiscard]] QImage screenshot() const { return screenshot(home() + u"/screen.png"_s); }

private:
    void startDisplay(const QSize& screen);
    [[nodiscard]] QString windowManagerName() const;

    QProcess* m_windowManager = nullptr;
};

}  // namespace tralio
