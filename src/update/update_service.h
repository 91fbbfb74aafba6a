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

/// Finds out whether the maker offers a newer version, and installs it: downloads the archive, hands over to
/// an installer script and ends the program. All that happens is told by the observable members; nothing
/// fails otherwise. Used from the main thread.
class UpdateService final : public ObservableObject {
    Q_OBJECT

public:
    /// What the service takes from the program around it.
    struct Host {
        QUrl manifest;
        QString currentVersion;
        QString temporaryFolder;
        /// Of the key that signs archives, in hexadecimal digits. With an empty one they are not checked.
        QString publicKey = {};
        qint64 largestArchive = 500'000'000;  ///< bytes
        /// Archives come by https only; tests have a server on their own machine.
        bool takesFromLoopback = false;
        /// Ends the program.
        std::function<void()> terminate;
        /// Opens the maker's web site, for a copy that is updated otherwise.
        std::function<void()> openWebsite;
        std::function<QDateTime()> now = &QDateTime::currentDateTimeUtc;
    };

    /// The manifest at its place on the maker's server.
    [[nodiscard]] static QUrl defaultManifest();

    /// `http` and `installer` outlive the service.
    UpdateService(HttpClient& http, Installer& installer, Host host);
    ~UpdateService() override;

    Observable<bool> isChecking{*this, false};
    Observable<bool> isUpdating{*this, false};  ///< from the start of the download to the end of the program
    Observable<double> downloadProgress{*this, 0};  ///< 0 to 1; stays at 0 while the size is not known
    Observable<std::optional<AppUpdateInfo>> updateInfo{*this};  ///< the offer of the last successful check
    /// Whether that check found a newer version. The user may dismiss the banner, which takes it back.
    Observable<bool> isUpdateAvailable{*this, false};
    Observable<std::optional<QDateTime>> lastCheckTime{*this};
    Observable<std::optional<QString>> statusMessage{*this};  ///< the last text for the user
    /// Why the last installation came to nothing, in the status's words; until another begins or an offer is
    /// found.
    Observable<std::optional<QString>> installationFailure{*this};

    [[nodiscard]] const QString& currentVersion() const { return m_host.currentVersion; }
    /// Whether a package manager updates this copy: then an installation leads to the web site.
    [[nodiscard]] bool isPackaged() const;

    /// Returns at once; the outcome comes later. Ignored while a check or an installation is under way.
    /// `manual` is for the user's own request, which also hears that there is nothing new, or what went
    /// wrong.
    void checkForUpdates(bool manual);

    /// Downloads what `updateInfo` offers and installs it, unless something stands in the way of that: then
    /// the program goes on. Ignored while an installation is under way, and without an offer that has a valid
    /// address.
    void startAutoUpdate();

private:
    QCoro::Task<> check(QUrl url, bool manual);
    void conclude(const AppUpdateInfo& offer, bool manual);
    void failCheck(const QString& message, bool manual);

    QCoro::Task<> install(QUrl archive);
    [[nodiscard]] bool isSecure(const QUrl& archive) const;
    QCoro::Task<> download(QUrl archive);
    QCoro::Task<QByteArray> fetchSignature(QUrl archive);
    QCoro::Task<> applyUpdate(QString zipPath, QByteArray signature);
    void failInstallation(const QString& message);

    HttpClient& m_http;
    Installer& m_installer;
    Host m_host;
    std::stop_source m_stop;  ///< ends the requests of a service that goes
    /// The part of the archive received so far. A member and not a local of the downloading coroutine, whose
    /// frame is not destroyed when the program ends during a download: half an archive must not stay behind.
    std::unique_ptr<StagedFile> m_archive;
    QString m_checkedArchive;  ///< its path, whole, until the script has it
};

}  // namespace tralio
