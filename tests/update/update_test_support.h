#pragma once

#include "platform/linux/helpers/helper_http_client.h"
#include "support/fake_clock.h"
#include "support/noted_idle_limits.h"
#include "support/scripted_installer.h"
#include "support/stand_in_model.h"
#include "update/update_service.h"

namespace tralio {

/// A service of version 1.0.9, and a server for manifest and archive. Time stands still; what the service
/// does to the program around it is written down.
struct UpdateTest : testing::Test {
    static inline const QDateTime now = QDateTime::fromSecsSinceEpoch(1'795'000'000, QTimeZone::utc());

    UpdateService::Host host() {
        return {.manifest = QUrl(address(u"/version.json"_s)),
            .currentVersion = u" 1.0.9\n"_s,
            .temporaryFolder = folder.path(),
            .takesFromLoopback = true,
            .terminate = [this] { events.append(u"terminate"_s); },
            .openWebsite = [this] { events.append(u"website"_s); },
            .now = [] { return now; }};
    }

    QString address(const QString& path) const { return u"http://127.0.0.1:%1"_s.arg(server.port()) + path; }

    AppUpdateInfo offer(const QString& version) const {
        return {version, u"Nhanh hơn"_s, address(u"/Tralio.zip"_s), std::nullopt};
    }

    void offers(const QString& version) {
        server.replies(StandInReply::withBody(200, offer(version).toJson()));
    }

    /// The program, set up in another way.
    template <typename Change>
    void restart(const Change& change) {
        UpdateService::Host otherwise = host();
        change(otherwise);
        service = std::make_unique<UpdateService>(noted, installer, otherwise);
    }

    /// What the service tells at the end of a check that finds the server as it is now.
    std::optional<QString> check(bool manual) {
        service->checkForUpdates(manual);
        EXPECT_TRUE(eventually([this] { return !service->isChecking(); }));
        return service->statusMessage();
    }

    QString pathOf(const QString& name) const { return QDir(folder.path()).filePath(name); }

    FakeClock clock;
    StandInModel server;
    QTemporaryDir folder;
    ScriptedInstaller installer;
    QStringList events;
    HelperHttpClient http{QStringLiteral(HTTP_PROGRAM), clock};
    NotedIdleLimits noted{http};
    std::unique_ptr<UpdateService> service = std::make_unique<UpdateService>(noted, installer, host());
};

}  // namespace tralio
