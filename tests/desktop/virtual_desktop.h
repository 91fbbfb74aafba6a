#pragma once

#include <QImage>
#include <QPoint>
#include <QSize>

#include "desktop/test_session.h"

namespace tralio {

/// The desktop of one test: an X server, a session bus with accessibility, a window manager and a tray, with
/// a new home folder. The destructor ends all programs it started. One per process, since the session bus
/// becomes the process's own. Throws std::runtime_error, naming what is missing, if it cannot start.
class VirtualDesktop final : public TestSession {
public:
    enum class Tray { present, absent };

    explicit VirtualDesktop(Tray tray = Tray::present, const QSize& screen = {1280, 1024});

    /// Starts a compositor, so that windows can be translucent, and sets the background colour of the screen.
    void startCompositor();

    /// Replaces the window manager by another; waits until that manages the windows.
    void replaceWindowManager(const QString& program, const QStringList& arguments);

    /// Starts a real desktop's panel at the upper edge, 32 high, that contains only `plugin`.
    void startPanel(const QString& plugin = {});

    /// Kills the window manager, so that it cannot clean up.
    void killWindowManager();

    /// Starts a program. Returns its window, which has this class, once it is in front. Throws if it does not
    /// appear.
    QString startInFront(
        const QString& windowClass, const QString& program, const QStringList& arguments = {});
    /// Starts the selection probe, whose text can only be copied. Returns its window, in front. A silent one
    /// does not answer on the accessibility bus either.
    QString startProbe(const QStringList& arguments) {
        return startInFront(u"selection-probe"_s, QStringLiteral(SELECTION_PROBE), arguments);
    }
    QString startSilentProbe(const QString& text);
    /// Starts a terminal with a shell that runs `commands`. Returns its window, in front.
    QString startTerminal(const QString& commands);
    /// Waits for a visible window of this class to be in front. Returns it; empty if it does not appear.
    QString bringToFront(const QString& windowClass) const;
    /// Presses Ctrl+A until the application in front has selected `text`, which it may still be reading.
    /// Returns whether it has.
    [[nodiscard]] bool selectsAll(const QString& text) const;
    /// Starts a text editor with `text`, all of it selected. Returns its window, in front.
    QString selectInEditor(const QString& text);
    [[nodiscard]] bool isVisible(const QString& windowClass) const {
        return !xdotool(u"search --onlyvisible --class "_s + windowClass).isEmpty();
    }

    void pressTextHotKey() const override { press(u"super+shift+d"_s); }
    void press(const QString& keys) const { xdotool(u"key "_s + keys); }
    /// Makes held keys repeat early and fast.
    void repeatsFast() const { run(u"xset"_s, {u"r"_s, u"rate"_s, u"100"_s, u"50"_s}); }
    /// Holds keys down, in order, or releases them.
    void hold(const QStringList& keys) const { xdotool(u"keydown "_s + keys.join(u' ')); }
    void release(const QStringList& keys) const { xdotool(u"keyup "_s + keys.join(u' ')); }
    void type(const QString& text) const { run(u"xdotool"_s, {u"type"_s, u"--delay"_s, u"5"_s, text}); }
    /// Types a text, then Return.
    void enter(const QString& text) const {
        type(text);
        press(u"Return"_s);
    }
    /// Clicks at a place relative to the top left corner of a window, or of the screen.
    void click(const QString& window, const QPoint& place, int times = 1) const;
    void click(const QPoint& place) const;
    void movePointer(const QPoint& place) const {
        xdotool(u"mousemove %1 %2"_s.arg(place.x()).arg(place.y()));
    }
    /// Presses the button at one place of the screen or a window, moves, and releases it at another
    /// immediately.
    void drag(const QPoint& from, const QPoint& to, const QString& window = {}) const;
    [[nodiscard]] QString windowWithKeyboard() const { return xdotool(u"getactivewindow"_s); }

    void setClipboard(const QString& text);
    [[nodiscard]] QString clipboard() const {
        return run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s});
    }
    /// The text selected last, in any application.
    [[nodiscard]] QString primary() const {
        return run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"primary"_s});
    }

    /// Takes a picture of the whole screen, and writes it to `path` as a PNG.
    QImage screenshot(const QString& path) const;
    [[nodiscard]] QImage screenshot() const { return screenshot(home() + u"/screen.png"_s); }

private:
    void startDisplay(const QSize& screen);
    [[nodiscard]] QString windowManagerName() const;

    QProcess* m_windowManager = nullptr;
};

}  // namespace tralio
