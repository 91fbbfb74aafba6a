#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tralio {

/// What the update server's manifest offers.
struct AppUpdateInfo {
    QString version;
    QString releaseNotes;  ///< for the user to read
    QString downloadUrl;   ///< of the archive, a zip file that holds the application bundle
    std::optional<QString> pubDate;

    bool operator==(const AppUpdateInfo&) const = default;

    /// Fails with a `LocalizedError` that names the key which is missing or of the wrong type. Keys that are
    /// not known are ignored.
    [[nodiscard]] static AppUpdateInfo fromJson(const QByteArray& json);
    [[nodiscard]] QByteArray toJson() const;
};

}  // namespace tralio
