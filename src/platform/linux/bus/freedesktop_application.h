#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantMap>

namespace tralio {

class SessionService;

/// The standard interface of the session service, through which desktops call the actions of a desktop file.
/// Action names: `translate-selection`, `capture-screen`, `open`, and `translate-text` with the text as
/// parameter.
class FreedesktopApplication final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit FreedesktopApplication(SessionService& service);

public Q_SLOTS:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(
        const QString& action, const QVariantList& parameter, const QVariantMap& platformData);

private:
    SessionService& m_service;
};

}  // namespace tralio
