#pragma once

namespace tralio {

class Permissions;
class Workspace;

/// Asks for the permissions that the hot keys' actions need. If the desktop does not grant one at once, opens
/// the desktop's settings. Used from the main thread.
class PermissionRequests final {
public:
    /// Both outlive this object.
    PermissionRequests(Permissions& permissions, Workspace& workspace);

    [[nodiscard]] bool isAccessibilityGranted() const;
    void requestAccessibility();
    [[nodiscard]] bool isScreenCaptureGranted() const;
    void requestScreenCapture();

private:
    Permissions& m_permissions;
    Workspace& m_workspace;
};

}  // namespace tralio
