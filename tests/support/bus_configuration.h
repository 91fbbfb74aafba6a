#pragma once

#include <QFile>

#include "support/files.h"

namespace tralio {

/// From now on, also lets the bus configured in `folder` start these services; the bus may be running
/// already.
inline void offerServices(const QString& folder, const QStringList& services) {
    for (const QString& service : services) {
        const QString file = QStringLiteral("/%1.service").arg(service);
        QFile::link(
            QStringLiteral("/usr/share/dbus-1/services") + file, folder + QStringLiteral("/services") + file);
    }
}

/// Writes to `folder` the configuration of a message bus that can start only the named services of this
/// machine: others must not take part in a test. Returns its path.
[[nodiscard]] inline QString writeBusConfiguration(const QString& folder, const QStringList& services) {
    QDir().mkpath(folder + QStringLiteral("/services"));
    offerServices(folder, services);
    return writeFile(folder + QStringLiteral("/bus.conf"),
        R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <servicedir>)" +
            QFile::encodeName(folder) + R"(/services</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)");
}

}  // namespace tralio
