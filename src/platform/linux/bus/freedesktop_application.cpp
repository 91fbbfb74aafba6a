#include "platform/linux/bus/freedesktop_application.h"

#include "platform/linux/bus/session_service.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QString activationToken(const QVariantMap& platformData) {
    const QString token = platformData.value(u"activation-token"_s).toString();
    return token.isEmpty() ? platformData.value(u"desktop-startup-id"_s).toString() : token;
}

}  // namespace

FreedesktopApplication::FreedesktopApplication(SessionService& service)
    : QDBusAbstractAdaptor(&service), m_service(service) {}

void FreedesktopApplication::Activate(const QVariantMap& platformData) {
    m_service.runNamed(u"open"_s, {}, activationToken(platformData));
}

void FreedesktopApplication::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
    Activate(platformData);
}

void FreedesktopApplication::ActivateAction(
    const QString& action, const QVariantList& parameter, const QVariantMap& platformData) {
    m_service.runNamed(action, parameter, activationToken(platformData));
}

}  // namespace tralio
