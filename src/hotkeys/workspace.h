#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace tralio {

struct RunningApplication {
    qint32 processId = 0;
    /// The desktop's own id of the application, or the class of its window.
    std::optional<QString> bundleIdentifier;
    std::optional<QString> localizedName;
};

/// The desktop's list of applications and its way to open links. Used from the main thread.
class Workspace {
public:
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() = 0;

    /// Opens a web page in the default browser, or the settings page of an `x-apple.systempreferences:` link.
    virtual void openURL(const QUrl& url) = 0;
};

}  // namespace tralio
