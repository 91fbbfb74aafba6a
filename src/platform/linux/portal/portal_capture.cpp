#include "platform/linux/portal/portal_capture.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QPromise>
#include <QUrl>
#include <qcorofuture.h>

#include <memory>

#include "common/background.h"
#include "common/debug_log.h"
#include "common/picture.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto timeLimit = 2min;
/// The clock may be set back meanwhile, or that of a file server be behind; and time stamps are rounded.
constexpr std::chrono::seconds clocksDiffer = 10min;
constexpr qint32 taken = 0;
constexpr qint32 notTaken = 1;

/// Moves the desktop's picture to where it is wanted. Desktops save a capture among the user's pictures,
/// where nobody has asked for this one, so it is deleted there.
bool take(const QUrl& picture, const QDateTime& begun, const QString& outputPath) {
    const QString path = picture.toLocalFile();
    // Anything but a regular file may have no end.
    if (!QFileInfo(path).isFile())
        return false;
    // Any format will do: only the recogniser reads the file, and it goes by the bytes.
    const bool copied = QFileInfo(path).size() <= largestPicture && QFile::copy(path, outputPath);
    // not the permissions of the original
    QFile::setPermissions(outputPath, QFile::ReadOwner | QFile::WriteOwner);
    if (QFileInfo(path).lastModified() >= begun)
        QFile::remove(path);
    return copied;
}

}  // namespace

QCoro::Task<qint32> PortalCapture::run(QString outputPath) {
    const QDateTime begun = QDateTime::currentDateTime().addSecs(-clocksDiffer.count());
    const auto promise = std::make_shared<QPromise<PortalAnswer>>();
    promise->start();
    const QVariantMap options{{u"interactive"_s, true}};
    const QVariantList arguments{QString()};
    m_portal.request(QLatin1String(interface), u"Screenshot"_s, arguments, options, timeLimit, &m_portal,
        [promise](const PortalAnswer& given) {
            promise->addResult(given);
            promise->finish();
        });
    const PortalAnswer answer = co_await promise->future();
    if (answer.outcome == PortalOutcome::silent)
        debugLog(u"PortalCapture: no answer from the desktop, which counts as a cancel"_s);
    if (answer.outcome == PortalOutcome::failed)
        debugLog(u"PortalCapture: refused by the desktop or cancelled "_s + answer.error);
    if (answer.outcome != PortalOutcome::granted)
        co_return notTaken;
    const QUrl picture = answer.results.value(u"uri"_s).toUrl();
    auto taking = inBackground([picture, begun, outputPath] { return take(picture, begun, outputPath); });
    const bool isTaken = co_await std::move(taking);
    if (!isTaken)
        debugLog(u"PortalCapture: the desktop's picture cannot be taken over"_s);
    co_return isTaken ? taken : notTaken;
}

}  // namespace tralio
