#include "desktop/virtual_desktop.h"

#include <QDir>
#include <QFile>
#include <QPoint>
#include <QTest>

#include <stdexcept>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// What a program prints first, as soon as it has printed a line.
QString firstLine(QProcess& process, const char* what) {
    const bool printed = waitUntil([&] { return process.canReadLine(); });
    if (!printed)
        throw std::runtime_error(std::string(what) + " does not start");
    return QString::fromUtf8(process.readLine()).trimmed();
}

}  // namespace

bool waitUntil(const std::function<bool()>& condition, int seconds) {
    return QTest::qWaitFor(condition, seconds * 1000);
}

VirtualDesktop::VirtualDesktop(Tray tray) : m_environment(QProcessEnvironment::systemEnvironment()) {
    for (const QString& name : m_environment.keys()) {
        const bool leaks = name.startsWith(u"XDG_") || name.startsWith(u"QT_") || name.startsWith(u"GTK_") ||
                           name == u"WAYLAND_DISPLAY" || name.endsWith(u"_proxy", Qt::CaseInsensitive);
        if (leaks)
            m_environment.remove(name);
    }
    const QString runtime = home() + u"/runtime"_s;
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_environment.insert(u"HOME"_s, home());
    m_environment.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    QDir().mkpath(home() + u"/tmp"_s);
    m_environment.insert(u"TMPDIR"_s, home() + u"/tmp"_s);
    m_environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);

    startDisplay();
    startBus();
    m_windowManager = &start(u"openbox"_s, {u"--sm-disable"_s});
    const bool managed = waitUntil([this] {
        return run(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTING_WM_CHECK"_s}).contains(u"window id");
    });
    if (!managed)
        throw std::runtime_error("openbox does not start");
    if (tray == Tray::present) {
        start(u"tint2"_s);
        if (!waitUntil([this] { return isVisible(u"tint2"_s); }))
            throw std::runtime_error("tint2 does not start");
    }
}

VirtualDesktop::~VirtualDesktop() {
    // The display, the first that was started, goes last: what draws on it may want to say good-bye.
    while (!m_processes.empty()) {
        QProcess& process = *m_processes.back();
        process.terminate();
        if (!process.waitForFinished(1000)) {
            process.kill();
            process.waitForFinished(1000);
        }
        m_processes.pop_back();
    }
}

void VirtualDesktop::startDisplay() {
    // The server picks a free display number itself and prints it.
    QProcess& server = start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x1024x24"_s,
                                         u"-nolisten"_s, u"tcp"_s, u"-noreset"_s});
    m_environment.insert(u"DISPLAY"_s, u':' + firstLine(server, "Xvfb"));
}

void VirtualDesktop::startBus() {
    QProcess& bus = start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address=1"_s});
    const QString address = firstLine(bus, "dbus-daemon");
    m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, address);
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    run(u"gdbus"_s, {u"call"_s, u"--session"_s, u"--dest"_s, u"org.a11y.Bus"_s, u"--object-path"_s,
                     u"/org/a11y/bus"_s, u"--method"_s, u"org.freedesktop.DBus.Properties.Set"_s,
                     u"org.a11y.Status"_s, u"IsEnabled"_s, u"<true>"_s});
}

QProcess& VirtualDesktop::start(const QString& program, const QStringList& arguments) {
    return startIn(m_environment, program, arguments);
}

QProcess& VirtualDesktop::startIn(const QProcessEnvironment& environment, const QString& program,
                                  const QStringList& arguments) {
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment);
    process->setWorkingDirectory(home());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(program, arguments);
    if (!process->waitForStarted())
        throw std::runtime_error((program + u" cannot be started"_s).toStdString());
    m_processes.push_back(std::move(process));
    return *m_processes.back();
}

void VirtualDesktop::killWindowManager() {
    m_windowManager->kill();
    m_windowManager->waitForFinished();
}

void VirtualDesktop::startCompositor() {
    run(u"xsetroot"_s, {u"-solid"_s, u"#D5DBE3"_s});
    start(u"picom"_s, {u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s});
    const bool runs = waitUntil([this] {
        return run(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTED"_s}).contains(u"picom") ||
               !run(u"xdotool"_s, {u"search"_s, u"--class"_s, u"picom"_s}).isEmpty();
    });
    if (!runs)
        throw std::runtime_error("picom does not start");
}

QString VirtualDesktop::run(const QString& program, const QStringList& arguments) const {
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.waitForFinished(10000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString VirtualDesktop::write(const QString& name, const QString& content) const {
    const QString path = home() + u'/' + name;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content.toUtf8()) < 0)
        throw std::runtime_error("cannot write into the home folder");
    return path;
}

QString VirtualDesktop::bringToFront(const QString& windowClass) const {
    QString window;
    const bool inFront = waitUntil([&] {
        const QStringList windows =
            run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, windowClass}).split(u'\n');
        window = windows.last();
        if (window.isEmpty())
            return false;
        if (run(u"xdotool"_s, {u"getactivewindow"_s}) == window)
            return true;
        run(u"xdotool"_s, {u"windowactivate"_s, window});
        return false;
    });
    return inFront ? window : QString();
}

bool VirtualDesktop::isVisible(const QString& windowClass) const {
    return !run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, windowClass}).isEmpty();
}

void VirtualDesktop::press(const QString& keys) const {
    run(u"xdotool"_s, {u"key"_s, keys});
}

void VirtualDesktop::hold(const QStringList& keys) const {
    run(u"xdotool"_s, QStringList{u"keydown"_s} + keys);
}

void VirtualDesktop::release(const QStringList& keys) const {
    run(u"xdotool"_s, QStringList{u"keyup"_s} + keys);
}

void VirtualDesktop::type(const QString& text) const {
    run(u"xdotool"_s, {u"type"_s, u"--delay"_s, u"5"_s, text});
}

void VirtualDesktop::click(const QString& window, const QPoint& place, int times) const {
    run(u"xdotool"_s,
        {u"mousemove"_s, u"--window"_s, window, QString::number(place.x()), QString::number(place.y()),
         u"click"_s, u"--repeat"_s, QString::number(times), u"--delay"_s, u"40"_s, u"1"_s});
}

void VirtualDesktop::setClipboard(const QString& text) {
    // The program keeps running: it is the owner whom everybody asks for the content.
    QProcess& owner = start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s});
    owner.write(text.toUtf8());
    owner.closeWriteChannel();
    if (!waitUntil([&] { return clipboard() == text; }))
        throw std::runtime_error("xclip does not take the clipboard");
}

QString VirtualDesktop::clipboard() const {
    return run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s});
}

QImage VirtualDesktop::screenshot(const QString& path) const {
    run(u"import"_s, {u"-window"_s, u"root"_s, path});
    return QImage(path);
}

}  // namespace tralio
