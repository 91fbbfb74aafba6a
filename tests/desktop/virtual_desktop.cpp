#include "desktop/virtual_desktop.h"

namespace tralio {

VirtualDesktop::VirtualDesktop(Tray tray, const QSize& screen) {
    startDisplay(screen);
    startBus();
    m_windowManager = &start(u"openbox"_s, {u"--sm-disable"_s});
    awaitStart(u"openbox"_s, [this] { return !windowManagerName().isEmpty(); });
    if (tray == Tray::present) {
        start(u"tint2"_s);
        awaitStart(u"tint2"_s, [this] { return isVisible(u"tint2"_s); });
    }
}

void VirtualDesktop::startDisplay(const QSize& screen) {
    // The server chooses a free display number and prints it.
    const QString size = u"%1x%2x24"_s.arg(screen.width()).arg(screen.height());
    QProcess& server = start(u"Xvfb"_s,
        {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, size, u"-nolisten"_s, u"tcp"_s, u"-noreset"_s});
    setVariable(u"DISPLAY"_s, u':' + firstLine(server));
    // Without a graphics card GTK 4 takes 0.3 s to redraw with GL, and answers no calls meanwhile.
    setVariable(u"GSK_RENDERER"_s, u"cairo"_s);
}

QString VirtualDesktop::windowManagerName() const {
    const QString window = run(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTING_WM_CHECK"_s}).section(u'#', 1);
    return window.isEmpty() ? QString() : run(u"xprop"_s, {u"-id"_s, window.trimmed(), u"_NET_WM_NAME"_s});
}

void VirtualDesktop::replaceWindowManager(const QString& program, const QStringList& arguments) {
    killWindowManager();
    m_windowManager = &start(program, arguments);
    awaitStart(program, [&] { return windowManagerName().contains(program, Qt::CaseInsensitive); });
}

void VirtualDesktop::startPanel(const QString& plugin) {
    // With its default plugins the panel goes on moving the focus for seconds after the first one is there.
    const QString plugins = plugin.isEmpty() ? QString() : uR"(<value type="int" value="1"/>)"_s;
    write(u".config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"_s,
        uR"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="32"/>
      <property name="plugin-ids" type="array">%1</property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="%2"/>
  </property>
</channel>
)"_s.arg(plugins, plugin));
    start(u"xfce4-panel"_s, {u"--disable-wm-check"_s, u"--sm-client-disable"_s});
}

void VirtualDesktop::killWindowManager() {
    m_windowManager->kill();
    m_windowManager->waitForFinished();
}

void VirtualDesktop::startCompositor() {
    run(u"xsetroot"_s, {u"-solid"_s, u"#D5DBE3"_s});
    start(u"picom"_s, {u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s});
    awaitStart(u"picom"_s, [this] { return !xdotool(u"search --class picom"_s).isEmpty(); });
}

QString VirtualDesktop::startInFront(
    const QString& windowClass, const QString& program, const QStringList& arguments) {
    start(program, arguments);
    QString window;
    awaitStart(program, [&] { return !(window = bringToFront(windowClass)).isEmpty(); });
    return window;
}

QString VirtualDesktop::startSilentProbe(const QString& text) {
    QProcessEnvironment silent = environment();
    silent.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
    startIn(silent, QStringLiteral(SELECTION_PROBE), {text});
    return bringToFront(u"selection-probe"_s);
}

QString VirtualDesktop::startTerminal(const QString& commands) {
    return startInFront(u"xterm"_s, u"xterm"_s,
        {u"-geometry"_s, u"80x20+0+0"_s, u"-u8"_s, u"-fa"_s, u"Noto Sans Mono"_s, u"-e"_s, u"sh"_s, u"-c"_s,
            commands});
}

QString VirtualDesktop::bringToFront(const QString& windowClass) const {
    QString window;
    const bool inFront = waitUntil([&] {
        window = xdotool(u"search --onlyvisible --class "_s + windowClass).section(u'\n', -1);
        if (!window.isEmpty() && windowWithKeyboard() != window)
            xdotool(u"windowactivate %1 windowfocus %1"_s.arg(window));
        return !window.isEmpty() && windowWithKeyboard() == window;
    });
    return inFront ? window : QString();
}

bool VirtualDesktop::selectsAll(const QString& text) const {
    return waitUntil([&] {
        press(u"ctrl+a"_s);
        return primary() == text;
    });
}

QString VirtualDesktop::selectInEditor(const QString& text) {
    const QString editor =
        startInFront(u"Mousepad"_s, u"mousepad"_s, {u"--disable-server"_s, write(u"selected.txt"_s, text)});
    awaitStart(u"mousepad"_s, [&] { return selectsAll(text); });
    return editor;
}

void VirtualDesktop::click(const QString& window, const QPoint& place, int times) const {
    xdotool(u"mousemove --window %1 %2 %3 click --repeat %4 --delay 40 1"_s.arg(window)
                .arg(place.x())
                .arg(place.y())
                .arg(times));
}

void VirtualDesktop::click(const QPoint& place) const {
    movePointer(place);
    xdotool(u"click 1"_s);
}

void VirtualDesktop::drag(const QPoint& from, const QPoint& to, const QString& window) const {
    const QString move = window.isEmpty() ? u"mousemove"_s : u"mousemove --window "_s + window;
    const auto moveTo = [&](const QPoint& place) {
        return u"%1 %2 %3"_s.arg(move).arg(place.x()).arg(place.y());
    };
    xdotool(u"%1 mousedown 1 %2 %3 mouseup 1"_s.arg(moveTo(from), moveTo((from + to) / 2), moveTo(to)));
}

void VirtualDesktop::setClipboard(const QString& text) {
    // xclip keeps running: it owns the selection and answers requests for it.
    QProcess& owner = start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s});
    owner.write(text.toUtf8());
    owner.closeWriteChannel();
    awaitStart(u"xclip"_s, [&] { return clipboard() == text; });
}

QImage VirtualDesktop::screenshot(const QString& path) const {
    run(u"import"_s, {u"-window"_s, u"root"_s, path});
    return QImage(path);
}

}  // namespace tralio
