#pragma once

#include "desktop/test_session.h"

namespace tralio {

/// A session of KDE's window manager without a screen, with the desktop portal and KDE's backend of it. No
/// key can be pressed here; its daemon of shortcuts is told that one was. The compositor and the portal are
/// an ordinary user's.
class KwinDesktop final : public TestSession {
public:
    KwinDesktop();

    /// The shortcuts that this program has with the desktop.
    [[nodiscard]] QString shortcuts() const;
    void pressTextHotKey() const override;
    /// Ends KDE's backend of the portal, as a crash would.
    void endPortalBackend() const;

    /// Whether a window of this title is open.
    [[nodiscard]] bool hasWindow(const QString& title) const;
    void bringToFront(const QString& title) const;

private:
    /// As the package does it: KDE knows programs by their desktop files.
    void installProgram();
    void startCompositor();
    /// Asks the daemon of shortcuts.
    QString askForShortcuts(
        const QString& path, const QString& method, const QStringList& arguments = {}) const;
    /// What has this program's shortcuts there; empty where nothing has.
    [[nodiscard]] QString component() const;
    /// Asks the search for windows of the desktop.
    QString askForWindows(const QString& method, const QStringList& arguments) const;
};

}  // namespace tralio
