#pragma once

#include <QDateTime>
#include <QUrl>
#include <qcorotask.h>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

#include "common/observable_object.h"
#include "update/app_update_info.h"

namespace tralio {

class HttpClient;
class Installer;
class StagedFile;

/// Checks whether the maker offers a newer version, and installs it: downloads the archive, hands over to an
/// installer script and ends the program. Outcomes and errors are reported only through the observable
/// members. Used from the main thread.
class UpdateService final : public ObservableObject {
    Q_OBJECT

public:
    /// What the program provides to the service.
    struct Host {
        QUrl manifest;
        QString currentVersion;
        QString temporaryFolder;
        /// Of the key that signs archives, in hexadecimal digits. If it is empty, signatures are not checked.
        QString publicKey = {};
        qint64 largestArchive = 500'000'000;  ///< bytes, fewer than `maximumPieces` of the HTTP helper
        /// Allows archives by http from this machine, for tests; otherwise only https is accepted.
        bool takesFromLoopback = false;
        /// Ends the program.
        std::function<void()> terminate;
        /// Opens the maker's web site, for copies that a package manager updates.
        std::function<void()> openWebsite;
        std::function<QDateTime()> now = &QDateTime::currentDateTimeUtc;
    };

    /// The address of the manifest on the maker's server.
    [[nodiscard]] static QUrl defaultManifest();

    /// `http` and `installer` outlive the service.
    UpdateService(HttpClient& http, Installer& installer, Host host);
    ~UpdateService() override;

    Observable<bool> isChecking{*this, false};
    /// true from the start of the download to the end of the program
    Observable<bool> isUpdating{*this, false};
    Observable<double> downloadProgress{*this, 0};  ///< 0 to 1; stays 0 while the size is unknown
    Observable<std::optional<AppUpdateInfo>> updateInfo{*this};  ///< the offer of the last successful check
    /// Whether that check found a newer version. Dismissing the banner sets it to false.
    Observable<bool> isUpdateAvailable{*this, false};
    Observable<std::optional<QDateTime>> lastCheckTime{*this};
    Observable<std::optional<QString>> statusMessage{*this};  ///< the latest message for the user
    /// The error message of the last installation, until another begins or an offer is found.
    Observable<std::optional<QString>> installationFailure{*this};

    [[nodiscard]] const QString& currentVersion() const { return m_host.currentVersion; }
    /// Whether a package manager updates this copy: then installing opens the web site.
    [[nodiscard]] bool isPackaged() const;

    /// Returns at once; the outcome comes later. Ignored while a check or an installation is under way.
    /// `manual` is for a check that the user asked for, which also reports that there is nothing new, or what
    /// went wrong.
    void checkForUpdates(bool manual);

    /// Downloads and installs what `updateInfo` offers. If something prevents that, the program keeps
    /// running. Ignored while an installation is under way, and without an offer that has a valid address.
    void startAutoUpdate();

private:
    QCoro::Task<> check(QUrl url, bool manual);
    void conclude(const AppUpdateInfo& offer, bool manual);
    void failCheck(const QString& message, bool manual);

    QCoro::Task<> install(QUrl archive);
    [[nodiscard]] bool isSecure(const QUrl& archive) const;
    QCoro::Task<> download(QUrl archive);
    QCoro::Task<QByteArray> fetchSignature(QUrl archive);
    QCoro::Task<> applyUpdate(QByteArray signature);
    void failInstallation(const QString& message);

    HttpClient& m_http;
    Installer& m_installer;
    Host m_host;
    std::stop_source m_stop;  ///< cancels the requests when the service is destroyed
    /// The archive, or the part received so far, until it has been checked. A member and not a local of the
    /// downloading coroutine, whose frame is not destroyed when the program ends during a download: half an
    /// archive must not stay behind.
    std::unique_ptr<StagedFile> m_archive;
};

}  // namespace tralio
