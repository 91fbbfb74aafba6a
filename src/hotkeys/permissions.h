#pragma once

namespace tralio {

/// What the desktop allows this program. Queries return what is already known and never block, so that they
/// can be polled. Used from the main thread.
class Permissions {
public:
    Permissions() = default;
    Permissions(const Permissions&) = delete;
    Permissions& operator=(const Permissions&) = delete;
    virtual ~Permissions() = default;

    [[nodiscard]] virtual bool isAccessibilityTrusted() const = 0;

    /// Makes the desktop ask the user, or grants the permission directly where it is the user's own switch.
    /// Returns whether it is granted now.
    virtual bool requestAccessibilityTrust() = 0;

    [[nodiscard]] virtual bool preflightScreenCaptureAccess() const = 0;
    virtual bool requestScreenCaptureAccess() = 0;
};

}  // namespace tralio
