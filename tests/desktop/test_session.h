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

/// Lets the event loop run until `condition` holds; false when `seconds` have passed without.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition, int seconds = 15);

/// A session of one test's own: a home folder, a session bus with accessibility, and the programs started in
/// it, which it ends, by process, when it goes. One per process, since the session bus becomes the process's
/// own.
///
/// Failures to start throw std::runtime_error with what is missing.
class TestSession {
public:
    TestSession(const TestSession&) = delete;
    TestSession& operator=(const TestSession&) = delete;
    virtual ~TestSession();

    [[nodiscard]] QString home() const { return m_home.path(); }
    [[nodiscard]] const QProcessEnvironment& environment() const { return m_environment; }

    /// Sets a variable of the environment of what is started from now on.
    void setVariable(const QString& name, const QString& value) { m_environment.insert(name, value); }

    /// Starts a program in this session.
    QProcess& start(const QString& program, const QStringList& arguments = {}) {
        return startIn(m_environment, program, arguments);
    }
    QProcess& startIn(
        const QProcessEnvironment& environment, const QString& program, const QStringList& arguments = {});

    /// Throws where what a program does once it has started does not come.
    static void awaitStart(const QString& program, const std::function<bool()>& condition, int seconds = 15);
    /// Runs a program in this session to its end and gives its output.
    QString run(const QString& program, const QStringList& arguments) const;

    /// The process of this program that another one has started; 0 while there is none.
    [[nodiscard]] int childOf(qint64 process, const QString& program) const {
        return run(u"pgrep"_s, {u"-P"_s, QString::number(process), u"-x"_s, program}).toInt();
    }
    /// The pictures of the screen that have not been cleared away.
    [[nodiscard]] QStringList capturesLeft() const {
        QStringList left;
        for (const char* folder : {"/tmp", "/runtime"})
            left += QDir(home() + QLatin1StringView(folder)).entryList({u"tralio_snip_*"_s});
        return left;
    }
    /// Runs xdotool with these words, where the session has an X server, and gives its output.
    QString xdotool(const QString& words) const { return run(u"xdotool"_s, words.split(u' ')); }

    /// Calls a method, named with its interface, on the session bus and gives the reply as text.
    QString callOnBus(const QString& service, const QString& object, const QString& method,
        const QStringList& arguments = {}) const;

    /// Starts Chromium in a profile of its own, and without what it does on its own account.
    void startChromium(const QStringList& arguments);

    /// Writes a file into the home folder, with the folders that lead to it. Gives its path.
    QString write(const QString& name, const QString& content) const;

    /// Of the bus that programs tell of themselves on.
    [[nodiscard]] QString accessibilityAddress() const {
        return callOnBus(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus.GetAddress"_s)
            .section(u'\'', 1, 1);
    }
    /// Turns the desktop's accessibility switch, which is on at the beginning.
    void setAccessibility(bool on) const;

    /// Presses the hot key for the selected text.
    virtual void pressTextHotKey() const = 0;

protected:
    TestSession();

    /// `services` are those that the bus may start beside what every desktop has: accessibility, and
    /// settings.
    void startBus(const QStringList& services = {});

    /// What a program prints first, as soon as it has printed a line.
    static QString firstLine(QProcess& process);

private:
    QTemporaryDir m_home;
    QProcessEnvironment m_environment;
    std::vector<std::unique_ptr<QProcess>> m_processes;
};

}  // namespace tralio
