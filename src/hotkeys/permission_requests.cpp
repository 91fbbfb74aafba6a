#include "hotkeys/permission_requests.h"

#include <QUrl>

#include "hotkeys/permissions.h"
#include "hotkeys/workspace.h"

namespace tralio {
namespace {

constexpr QStringView accessibilitySettings =
    u"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";
constexpr QStringView screenCaptureSettings =
    u"x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture";

}  // namespace

PermissionRequests::PermissionRequests(Permissions& permissions, Workspace& workspace)
    : m_permissions(permissions), m_workspace(workspace) {}

bool PermissionRequests::isAccessibilityGranted() const {
    return m_permissions.isAccessibilityTrusted();
}

void PermissionRequests::requestAccessibility() {
    if (!m_permissions.requestAccessibilityTrust())
        m_workspace.openURL(QUrl(accessibilitySettings.toString()));
}

bool PermissionRequests::isScreenCaptureGranted() const {
    return m_permissions.preflightScreenCaptureAccess();
}

void PermissionRequests::requestScreenCapture() {
    if (!m_permissions.requestScreenCaptureAccess())
        m_workspace.openURL(QUrl(screenCaptureSettings.toString()));
}

}  // namespace tralio
