#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tralio {

/// The manifest of the update server.
struct AppUpdateInfo {
    QString version;
    QString releaseNotes;  ///< shown to the user
    QString downloadUrl;   ///< of the archive, a zip file that holds the application bundle
    std::optional<QString> pubDate;

    bool operator==(const AppUpdateInfo&) const = default;

    /// Throws a `LocalizedError` that names a key which is missing or of the wrong type. Unknown keys are
    /// ignored.
    [[nodiscard]] static AppUpdateInfo fromJson(const QByteArray& json);
    [[nodiscard]] QByteArray toJson() const;
};

}  // namespace tralio
