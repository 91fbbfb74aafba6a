#pragma once

#include <QObject>
#include <QString>

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

/// Fetches the selected text of the application in front. Used from the main thread, where every callback
/// runs, too.
class SelectedTextFetch final : public QObject {
public:
    /// The desktop services that the fetch uses. All of them outlive this object.
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

    /// Tries four layers, each only if the previous ones found nothing: the focused element's selection; a
    /// script (or, if the application takes none, what the script runner knows without one); the
    /// application's own Copy menu item; and a synthetic copy shortcut, unless another application has come
    /// to the front by then. The last two leave the selection on the clipboard. If a password field has the
    /// focus, no layer is tried and nothing is found; nor is a copied text that the application marks as a
    /// password. The completion is called exactly once; before this returns, if one of the first two layers
    /// succeeds.
    void fetch(Completion completion);

    /// Why the last fetch found nothing, where trying another way would be pointless. `silentOwner`: the
    /// clipboard's owner did not say in time whether the copied text is a password. `lineOfCaret`: nothing is
    /// selected, and the application has copied the line with the caret instead.
    enum class Obstacle { none, ownWindow, password, silentOwner, noSelection, lineOfCaret };
    [[nodiscard]] Obstacle obstacle() const { return m_obstacle; }

    [[nodiscard]] std::optional<QString> directText(qint32 pid);
    [[nodiscard]] std::optional<QString> browserText(const QString& bundleId);

    /// Presses the Copy item of the application's menu; false if there is none.
    bool pressMenuCopy(qint32 pid);

private:
    /// The application that was in front when the fetch began.
    struct Front {
        qint32 processId;
        QString bundleIdentifier;
    };
    [[nodiscard]] bool isInFront(const Front& front) const;
    void executeKeystrokeCopy(const Front& front, qint64 initialCount, const Completion& completion);
    void pressCopyShortcut(qint32 pid);
    void waitForPasteboardChange(
        qint64 initialCount, std::chrono::milliseconds maxWait, Completion completion);
    [[nodiscard]] bool isLineOfCaret(const QString& copied);

    Platform m_platform;
    Obstacle m_obstacle = Obstacle::none;
    bool m_frontCopiesLines = false;  ///< where nothing is selected in it
};

}  // namespace tralio
