#pragma once

#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <vector>

namespace tralio {

/// Lets the event loop run until `condition` holds; false when `seconds` have passed without.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition, int seconds = 15);

/// A desktop of one test's own: an X server, a session bus with accessibility, a window manager and a tray,
/// in a new home folder. It ends what it started, by process, when it goes. One per process, since the
/// session bus becomes the process's own.
///
/// Failures to start throw std::runtime_error with what is missing.
class VirtualDesktop final {
public:
    enum class Tray { present, absent };

    explicit VirtualDesktop(Tray tray = Tray::present);
    VirtualDesktop(const VirtualDesktop&) = delete;
    VirtualDesktop& operator=(const VirtualDesktop&) = delete;
    ~VirtualDesktop();

    [[nodiscard]] QString home() const { return m_home.path(); }
    [[nodiscard]] const QProcessEnvironment& environment() const { return m_environment; }

    /// Sets a variable of the environment of what is started from now on.
    void setVariable(const QString& name, const QString& value) { m_environment.insert(name, value); }

    /// Starts a program on this desktop.
    QProcess& start(const QString& program, const QStringList& arguments = {});
    QProcess& startIn(const QProcessEnvironment& environment, const QString& program,
                      const QStringList& arguments = {});

    /// Starts a compositor, so that windows may be translucent, and gives the screen a colour.
    void startCompositor();

    /// Ends the window manager without a chance to tidy up.
    void killWindowManager();

    /// Runs a program on this desktop to its end and gives its output.
    QString run(const QString& program, const QStringList& arguments) const;

    /// Writes a file into the home folder, whose path it gives.
    QString write(const QString& name, const QString& content) const;

    /// The visible window of a class, waited for until it is in front; empty when it does not come.
    QString bringToFront(const QString& windowClass) const;
    [[nodiscard]] bool isVisible(const QString& windowClass) const;

    void press(const QString& keys) const;
    /// Holds keys down, in their order, or lets them go.
    void hold(const QStringList& keys) const;
    void release(const QStringList& keys) const;
    void type(const QString& text) const;
    /// Clicks at a place of a window, given from its top left corner.
    void click(const QString& window, const QPoint& place, int times) const;

    void setClipboard(const QString& text);
    [[nodiscard]] QString clipboard() const;

    /// The whole screen, also as a PNG at `path`.
    QImage screenshot(const QString& path) const;

private:
    void startDisplay();
    void startBus();

    QTemporaryDir m_home;
    QProcessEnvironment m_environment;
    std::vector<std::unique_ptr<QProcess>> m_processes;
    QProcess* m_windowManager = nullptr;
};

}  // namespace tralio
