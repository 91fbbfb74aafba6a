#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <vector>

namespace tralio {

using namespace Qt::StringLiterals;

/// Runs the event loop until `condition` holds; false if it does not within `seconds`.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition, int seconds = 15);

/// The session of one test: a home folder, a session bus with accessibility, and the programs started in it,
/// which the destructor ends. One per process, since the session bus becomes the process's own. Throws
/// std::runtime_error, naming what is missing, if it cannot start.
class TestSession {
public:
    TestSession(const TestSession&) = delete;
    TestSession& operator=(const TestSession&) = delete;
    virtual ~TestSession();

    [[nodiscard]] QString home() const { return m_home.path(); }
    [[nodiscard]] const QProcessEnvironment& environment() const { return m_environment; }

    /// Sets an environment variable for the programs started from now on.
    void setVariable(const QString& name, const QString& value) { m_environment.insert(name, value); }

    /// Starts a program in this session.
    QProcess& start(const QString& program, const QStringList& arguments = {}) {
        return startIn(m_environment, program, arguments);
    }
    QProcess& startIn(
        const QProcessEnvironment& environment, const QString& program, const QStringList& arguments = {});

    /// Throws if `condition` does not come true after a program was started.
    static void awaitStart(const QString& program, const std::function<bool()>& condition, int seconds = 15);
    /// Runs a program in this session to its end. Returns its output. Throws if it does not end.
    QString run(const QString& program, const QStringList& arguments) const;

    /// The process id of `program` as a child of `process`; 0 if there is none.
    [[nodiscard]] int childOf(qint64 process, const QString& program) const {
        return run(u"pgrep"_s, {u"-P"_s, QString::number(process), u"-x"_s, program}).toInt();
    }
    /// Screenshots that have not been deleted.
    [[nodiscard]] QStringList capturesLeft() const {
        QStringList left;
        for (const char* folder : {"/tmp", "/runtime"})
            left += QDir(home() + QLatin1StringView(folder)).entryList({u"tralio_snip_*"_s});
        return left;
    }
    /// Runs xdotool with these arguments, if the session has an X server. Returns its output.
    QString xdotool(const QString& words) const { return run(u"xdotool"_s, words.split(u' ')); }

    /// Calls a method, given with its interface, on the session bus. Returns the reply as text.
    QString callOnBus(const QString& service, const QString& object, const QString& method,
        const QStringList& arguments = {}) const;

    /// Returns when the program, if it runs, has taken what came from the session bus or the screen before.
    void awaitTurnOfProgram() const {
        callOnBus(u"org.tralio.Tralio"_s, u"/org/tralio/Tralio"_s,
            u"org.freedesktop.DBus.Introspectable.Introspect"_s);
    }

    /// Starts Chromium with a new profile, and without its background activities.
    void startChromium(const QStringList& arguments);

    /// Writes a file into the home folder, creating folders as needed. Returns its path.
    QString write(const QString& name, const QString& content) const;

    /// The address of the accessibility bus.
    [[nodiscard]] QString accessibilityAddress() const {
        return callOnBus(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus.GetAddress"_s)
            .section(u'\'', 1, 1);
    }
    /// Sets the desktop's accessibility switch, which is on at first. The program then knows of it.
    void setAccessibility(bool on) const;

    /// Presses the hot key for the selected text.
    virtual void pressTextHotKey() const = 0;

protected:
    TestSession();

    /// The bus may start accessibility and settings, which every desktop has.
    void startBus();

    /// Waits for the first line that a program prints.
    static QString firstLine(QProcess& process);

private:
    QTemporaryDir m_home;
    QProcessEnvironment m_environment;
    std::vector<std::unique_ptr<QProcess>> m_processes;
};

}  // namespace tralio
