// Takes the place of the program in a bundle: asks the server in UPDATE_MANIFEST for a newer version and
// installs it. Its messages to the user go into the file UPDATE_LOG. With UPDATE_STUBBORN it does not exit
// when it should.

#include <QCoreApplication>
#include <QFile>

#include "app/update_host.h"
#include "common/clock.h"
#include "common/on_change.h"
#include "platform/linux/bundle/bundle_installer.h"
#include "platform/linux/helpers/helper_http_client.h"
#include "platform/linux/helpers/installation.h"
#include "update/info_plist.h"

using namespace Qt::StringLiterals;
using namespace tralio;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QString programs = QCoreApplication::applicationDirPath();
    QCoreApplication::setApplicationVersion(bundleVersion(installation::infoPlist(programs)));
    BundleInstaller installer({.programs = programs});
    SystemClock clock;
    HelperHttpClient http(installation::helper(u"tralio-http"), clock);
    UpdateService::Host host = updateHost([] {});
    host.manifest = QUrl(qEnvironmentVariable("UPDATE_MANIFEST"));
    host.takesFromLoopback = true;
    if (qEnvironmentVariableIsSet("UPDATE_STUBBORN"))
        host.terminate = [] {};
    UpdateService service(http, installer, host);

    onAnyChange(service, &service, [&service] {
        if (service.isChecking() || service.isUpdating())
            return;
        QFile log(qEnvironmentVariable("UPDATE_LOG"));
        if (log.open(QIODevice::Append))
            log.write((service.currentVersion() + u": "_s + *service.statusMessage() + u'\n').toUtf8());
        if (service.updateInfo())
            service.startAutoUpdate();
    });
    service.checkForUpdates(true);
    return QCoreApplication::exec();
}
