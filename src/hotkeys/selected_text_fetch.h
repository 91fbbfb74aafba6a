#pragma once

#include <QObject>

#include <chrono>
#include <functional>
#include <optional>

namespace tralio {

class Accessibility;
class Clock;
class KeyEventPoster;
class Pasteboard;
class ScriptRunner;
class Workspace;

/// Gets the selected text of the application in front. Used from the main thread; every callback runs there
/// too.
class SelectedTextFetch final : public QObject {
public:
    /// What the fetch asks of the desktop. All of it outlives this object.
    struct Platform {
        Workspace& workspace;
        Accessibility& accessibility;
        ScriptRunner& scripts;
        Pasteboard& pasteboard;
        KeyEventPoster& keyEvents;
        Clock& clock;
    };

    using Completion = std::function<void(std::optional<QString>)>;

    explicit SelectedTextFetch(Platform platform);

    /// Tries four layers, each only when the ones before gave nothing: the focused element's selection, a
    /// script (or, where the application takes none, what the script runner knows without one), the
    /// application's own Copy menu item, and a synthetic copy shortcut. The last two leave the selection on
    /// the clipboard. A focused password yields nothing, and no layer is tried. The completion is called
    /// exactly once, before this returns when one of the first two layers answers.
    void fetch(Completion completion);

    /// Whether the last fetch ended at a focused password: its text may not be had in another way either.
    [[nodiscard]] bool hasMetPassword() const { return m_metPassword; }

    [[nodiscard]] std::optional<QString> directText(qint32 pid);
    [[nodiscard]] std::optional<QString> browserText(const QString& bundleId);

    /// Whether a Copy item was found and pressed.
    bool pressMenuCopy(qint32 pid);

private:
    void executeKeystrokeCopy(qint32 pid, qint64 initialCount, const Completion& completion);
    void pressCopyShortcut(qint32 pid);
    void waitForPasteboardChange(
        qint64 initialCount, std::chrono::milliseconds maxWait, Completion completion);

    Platform m_platform;
    bool m_metPassword = false;
};

}  // namespace tralio
