#include "support/bus_configuration.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr QStringView configuration =
    uR"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%1</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

QString writeBusConfiguration(const QString& folder, const QStringList& services) {
    const QString ours = folder + u"/services"_s;
    QDir().mkpath(ours);
    offerServices(folder, services);
    QFile written(folder + u"/bus.conf"_s);
    if (!written.open(QIODevice::WriteOnly) || written.write(configuration.toString().arg(ours).toUtf8()) < 0)
        throw std::runtime_error("the bus's configuration cannot be written");
    return written.fileName();
}

void offerServices(const QString& folder, const QStringList& services) {
    for (const QString& service : services) {
        const QString file = u'/' + service + u".service"_s;
        QFile::link(u"/usr/share/dbus-1/services"_s + file, folder + u"/services"_s + file);
    }
}

}  // namespace tralio
