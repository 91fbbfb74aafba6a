#pragma once

#include <QObject>

#include "hotkeys/accessibility.h"
#include "hotkeys/hot_key_platform.h"
#include "hotkeys/key_event_poster.h"
#include "hotkeys/pasteboard.h"
#include "hotkeys/permissions.h"
#include "hotkeys/script_runner.h"
#include "hotkeys/workspace.h"
#include "platform/linux/selection/own_copies.h"

namespace tralio {

/// The services of a session in which no program can access another: each reports that nothing is available.
struct UnavailableDesktop {
    struct HotKeys final : HotKeyPlatform {
        EventHandlerRef installEventHandler(EventHandler handler) override;
        void installStatusHandler(StatusHandler handler) override;
        Registration registerHotKey(const KeyCombination& combination, HotKeyID id) override;
        void unregisterHotKey(HotKeyRef ref) override;
    } hotKeys;

    struct NoWorkspace final : Workspace {
        std::optional<RunningApplication> frontmostApplication() override { return std::nullopt; }
        void openURL(const QUrl& url) override;
    } workspace;

    struct NoAccessibility final : Accessibility {
        std::unique_ptr<AccessibleElement> focusedElement(qint32 processId) override;
        std::unique_ptr<AccessibleElement> menuBar(qint32 processId) override;
    } accessibility;

    struct NoScripts final : ScriptRunner {
        std::optional<QString> execute(const QString& source) override;
        std::optional<QString> selectionInFront() override { return std::nullopt; }
        void launch(const QString& executable, const QStringList& arguments) override;
    } scripts;

    struct NoKeyEvents final : KeyEventPoster {
        bool canPost() const override { return false; }
        void post(const KeyEvent& event) override;
        void postToProcess(qint32 processId, const KeyEvent& event) override;
    } keyEvents;

    struct NoPermissions final : Permissions {
        bool isAccessibilityTrusted() const override { return false; }
        bool requestAccessibilityTrust() override { return false; }
        bool preflightScreenCaptureAccess() const override { return false; }
        bool requestScreenCaptureAccess() override { return false; }
    } permissions;
};

/// The clipboard through Qt, for sessions without direct access to the window system's.
class ToolkitPasteboard final : public Pasteboard {
public:
    ToolkitPasteboard();

    qint64 changeCount() override { return m_changeCount; }
    std::optional<QString> string() override;
    std::optional<QString> selectedString() override;
    QCoro::Task<Picture> picture() override;
    std::optional<bool> isConcealed() override;
    void setString(const QString& text) override;
    QString ownString() override { return m_own.text(); }

private:
    QObject m_context;
    qint64 m_changeCount = 0;
    OwnCopies m_own;
};

}  // namespace tralio
