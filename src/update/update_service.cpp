#include "update/update_service.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QUrlQuery>

#include <algorithm>
#include <chrono>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "common/debug_log.h"
#include "engine/hosts.h"
#include "engine/http_client.h"
#include "engine/loopback.h"
#include "update/installer.h"
#include "update/installer_script.h"
#include "update/staged_file.h"
#include "update/version_order.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto manifestTimeout = 10s;
constexpr auto archiveTimeout = 60s;
constexpr int statusOK = 200;

const QString cannotDownload = u"Lỗi tải bản cập nhật: "_s;
const QString cannotSave = u"Lỗi khi lưu file cập nhật: "_s;
const QString cannotInstall = u"Không thể chạy tiến trình cập nhật: "_s;

/// Requests the current manifest: no cache on the way may answer.
HttpRequest manifestRequest(const QUrl& url) {
    return {url, {{"Cache-Control", "no-cache"}, {"Pragma", "no-cache"}}};
}

/// Requests the archive without a content encoding: with one, the transferred size would not be its size.
HttpRequest archiveRequest(const QUrl& url) {
    return {url, {{"Accept-Encoding", "identity"}}};
}

/// Leaves a folder of another user alone, who could meanwhile put a link to one of ours in the place of what
/// is inside. What is to take its place then fails in words.
void removeWhateverIsAt(const QString& path) {
    struct stat entry {};
    if (lstat(QFile::encodeName(path).constData(), &entry) != 0)
        return;
    if (!S_ISDIR(entry.st_mode))
        QFile::remove(path);
    else if (entry.st_uid == geteuid())
        QDir(path).removeRecursively();
}

void writeScript(const QString& path, const QString& script) {
    try {
        StagedFile file(QFileInfo(path).path());
        file.write(script.toUtf8());
        file.moveTo(path);
    } catch (const FileError&) {
        // The installer reports that there is no script.
    }
}

}  // namespace

QUrl UpdateService::defaultManifest() {
    return QUrl(u"https://%1/version.json"_s.arg(hosts::updateServer));
}

UpdateService::UpdateService(HttpClient& http, Installer& installer, Host host)
    : m_http(http), m_installer(installer), m_host(std::move(host)) {}

UpdateService::~UpdateService() {
    m_stop.request_stop();
}

bool UpdateService::isPackaged() const {
    return m_installer.isPackaged();
}

void UpdateService::checkForUpdates(bool manual) {
    if (isChecking() || isUpdating())
        return;
    isChecking = true;
    if (manual)
        statusMessage = u"Đang kiểm tra bản cập nhật..."_s;

    if (!m_host.manifest.isValid()) {
        isChecking = false;
        return;
    }
    QUrl url = m_host.manifest;
    QUrlQuery query;
    query.addQueryItem(u"t"_s, QString::number(m_host.now().toSecsSinceEpoch()));
    url.setQuery(query);
    check(std::move(url), manual);
}

QCoro::Task<> UpdateService::check(QUrl url, bool manual) {
    const QPointer self(this);
    const std::stop_token stop = m_stop.get_token();
    QString failure;
    try {
        const HttpResponse response = co_await m_http.get(manifestRequest(url), manifestTimeout, stop);
        if (!self)
            co_return;
        if (response.status == statusOK)
            conclude(AppUpdateInfo::fromJson(response.body), manual);
        else
            failCheck(u"Không thể kết nối đến máy chủ cập nhật."_s, manual);
        co_return;
    } catch (const LocalizedError& error) {
        failure = error.errorDescription();
    }
    if (self)
        failCheck(u"Lỗi khi kiểm tra: "_s + failure, manual);
}

void UpdateService::failCheck(const QString& message, bool manual) {
    isChecking = false;
    if (manual)
        statusMessage = message;
}

void UpdateService::conclude(const AppUpdateInfo& offer, bool manual) {
    isChecking = false;
    lastCheckTime = m_host.now();
    const QString offered = offer.version.trimmed();
    const QString current = currentVersion().trimmed();
    if (std::is_gt(compareVersions(offered, current))) {
        installationFailure = std::nullopt;
        updateInfo = offer;
        isUpdateAvailable = true;
        statusMessage = u"Đã có bản cập nhật mới: v"_s + offered;
        return;
    }
    updateInfo = std::nullopt;
    isUpdateAvailable = false;
    if (manual)
        statusMessage = u"Bạn đang dùng phiên bản mới nhất (v%1)."_s.arg(current);
}

void UpdateService::startAutoUpdate() {
    if (!updateInfo())
        return;
    const QUrl archive(updateInfo()->downloadUrl, QUrl::StrictMode);
    if (!archive.isValid() || isUpdating())
        return;
    if (isPackaged()) {
        m_host.openWebsite();
        return;
    }
    try {
        m_installer.checkProgram();
    } catch (const LocalizedError& error) {
        failInstallation(cannotInstall + error.errorDescription());
        return;
    }
    if (!isSecure(archive)) {
        failInstallation(cannotDownload + u"Địa chỉ tải về không dùng kết nối bảo mật (https)."_s);
        return;
    }
    isUpdating = true;
    installationFailure = std::nullopt;
    downloadProgress = 0;
    statusMessage = u"Đang tải bản cập nhật v%1..."_s.arg(updateInfo()->version);
    install(archive);
}

QCoro::Task<> UpdateService::install(QUrl archive) {
    const QPointer self(this);
    QString failure;
    try {
        m_archive = std::make_unique<StagedFile>(m_host.temporaryFolder);
        co_await download(archive);
        if (!self)
            co_return;
        QByteArray signature;
        if (m_host.publicKey.isEmpty())
            debugLog(u"UpdateService: this build has no key, the signature of the archive is not checked"_s);
        else
            signature = co_await fetchSignature(archive);
        if (!self)
            co_return;
        statusMessage = u"Đang cài đặt và khởi động lại..."_s;
        co_await applyUpdate(signature);
        co_return;
    } catch (const LocalizedError& error) {
        failure = error.errorDescription();
    }
    if (self)
        failInstallation(cannotDownload + failure);
}

QCoro::Task<> UpdateService::download(QUrl archive) {
    const auto receive = [this](const QByteArray& piece, std::optional<qint64> totalSize) {
        const qint64 size = m_archive->size() + piece.size();
        if (std::max(size, totalSize.value_or(0)) > m_host.largestArchive)
            throw LocalizedError(
                u"File cập nhật quá lớn (hơn %1 MB)."_s.arg(m_host.largestArchive / 1'000'000));
        if (totalSize > 0 && size > *totalSize)
            throw LocalizedError(u"Máy chủ gửi nhiều hơn kích thước đã báo."_s);
        m_archive->write(piece);
        if (totalSize > 0)
            downloadProgress = static_cast<double>(m_archive->size()) / static_cast<double>(*totalSize);
    };
    const std::stop_token stop = m_stop.get_token();
    const HttpResponse response =
        co_await m_http.download(archiveRequest(archive), receive, archiveTimeout, stop);
    if (!response.status)
        throw LocalizedError(u"Không nhận được phản hồi HTTP hợp lệ."_s);
}

QCoro::Task<QByteArray> UpdateService::fetchSignature(QUrl archive) {
    constexpr qsizetype signatureSize = 64;
    archive.setPath(archive.path(QUrl::FullyEncoded) + u".sig"_s, QUrl::TolerantMode);
    const std::stop_token stop = m_stop.get_token();
    const HttpResponse response = co_await m_http.get(archiveRequest(archive), manifestTimeout, stop);
    if (response.status != statusOK || response.body.size() != signatureSize)
        throw LocalizedError(u"Máy chủ không có chữ ký của bản cập nhật."_s);
    co_return response.body;
}

bool UpdateService::isSecure(const QUrl& archive) const {
    if (archive.scheme() == u"https"_s)
        return true;
    return m_host.takesFromLoopback && archive.scheme() == u"http"_s &&
        isLoopback(archive.host().toStdString());
}

QCoro::Task<> UpdateService::applyUpdate(QByteArray signature) {
    const QPointer self(this);
    QString failure;
    try {
        const QString path = m_archive->path();
        if (!m_host.publicKey.isEmpty())
            co_await m_installer.checkSignature(path, signature, m_host.publicKey);
        if (self)
            co_await m_installer.checkArchive(path);
        if (!self)
            co_return;
        // Not before: the script of another session may be about to unpack what is there.
        const QString zipPath = QDir(m_host.temporaryFolder).filePath(u"Tralio-Update.zip"_s);
        removeWhateverIsAt(zipPath);
        std::exchange(m_archive, nullptr)->moveTo(zipPath);
        const QString scriptPath = QDir(m_host.temporaryFolder).filePath(u"tralio_updater.sh"_s);
        removeWhateverIsAt(scriptPath);
        writeScript(scriptPath, installerScript(zipPath));
        try {
            m_installer.run(scriptPath);
        } catch (const LocalizedError&) {
            QFile::remove(zipPath);
            throw;
        }
        m_host.terminate();
        co_return;
    } catch (const FileError& error) {
        failure = cannotSave + error.errorDescription();
    } catch (const LocalizedError& error) {
        failure = cannotInstall + error.errorDescription();
    }
    if (self)
        failInstallation(failure);
}

void UpdateService::failInstallation(const QString& message) {
    m_archive.reset();
    isUpdating = false;
    statusMessage = message;
    installationFailure = message;
}

}  // namespace tralio
