#include "desktop/test_session.h"

#include <QTest>

#include <stdexcept>

#include "support/private_bus.h"

namespace tralio {

bool waitUntil(const std::function<bool()>& condition, int seconds) {
    return QTest::qWaitFor(condition, seconds * 1000);
}

TestSession::TestSession() : m_environment(QProcessEnvironment::systemEnvironment()) {
    for (const QString& name : m_environment.keys()) {
        const bool leaks = name.startsWith(u"XDG_") || name.startsWith(u"QT_") || name.startsWith(u"GTK_") ||
            name == u"WAYLAND_DISPLAY" || name == u"DISPLAY" || name.endsWith(u"_proxy", Qt::CaseInsensitive);
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
}

TestSession::~TestSession() {
    // The display was started first and ends last: its clients may want to disconnect in order.
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

void TestSession::startBus() {
    const QString configuration =
        writeBusConfiguration(home(), {u"org.a11y.Bus"_s, u"ca.desrt.dconf"_s, u"org.xfce.Xfconf"_s});
    QProcess& bus =
        start(u"dbus-daemon"_s, {u"--config-file="_s + configuration, u"--nofork"_s, u"--print-address=1"_s});
    const QString address = firstLine(bus);
    m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, address);
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    setAccessibility(true);
}

void TestSession::setAccessibility(bool on) const {
    const auto call = [&](const QString& method, const QStringList& value = {}) {
        return callOnBus(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s,
            u"org.freedesktop.DBus.Properties."_s + method,
            QStringList{u"org.a11y.Status"_s, u"IsEnabled"_s} + value);
    };
    const QString value = on ? u"<true>"_s : u"<false>"_s;
    call(u"Set"_s, {value});
    if (!call(u"Get"_s).contains(value))
        throw std::runtime_error("accessibility cannot be switched");
    awaitTurnOfProgram();
}

QProcess& TestSession::startIn(
    const QProcessEnvironment& environment, const QString& program, const QStringList& arguments) {
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment);
    process->setStandardErrorFile(QProcess::nullDevice());
    process->setWorkingDirectory(home());
    process->start(program, arguments);
    if (!process->waitForStarted())
        throw std::runtime_error((program + u" cannot be started"_s).toStdString());
    m_processes.push_back(std::move(process));
    return *m_processes.back();
}

QString TestSession::run(const QString& program, const QStringList& arguments) const {
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(10000))
        throw std::runtime_error((program + u" does not end"_s).toStdString());
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString TestSession::callOnBus(const QString& service, const QString& object, const QString& method,
    const QStringList& arguments) const {
    return run(u"gdbus"_s,
        QStringList{u"call"_s, u"--session"_s, u"--dest"_s, service, u"--object-path"_s, object,
            u"--method"_s, method} +
            arguments);
}

void TestSession::startChromium(const QStringList& arguments) {
    start(u"chromium"_s,
        QStringList{u"--no-sandbox"_s, u"--test-type"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
            u"--disable-background-networking"_s, u"--disable-component-update"_s, u"--disable-sync"_s,
            u"--user-data-dir="_s + home() + u"/chromium"_s} +
            arguments);
}

QString TestSession::write(const QString& name, const QString& content) const {
    return writeFile(home() + u'/' + name, content.toUtf8());
}

void TestSession::awaitStart(const QString& program, const std::function<bool()>& condition, int seconds) {
    if (!waitUntil(condition, seconds))
        throw std::runtime_error((program + u" does not start"_s).toStdString());
}

QString TestSession::firstLine(QProcess& process) {
    awaitStart(process.program(), [&] { return process.canReadLine(); });
    return QString::fromUtf8(process.readLine()).trimmed();
}

}  // namespace tralio
