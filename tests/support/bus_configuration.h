#pragma once

#include <QStringList>

namespace tralio {

/// Writes into `folder` the configuration of a message bus that starts, of the services that this machine
/// has, those with the names given and no others: what else is installed must not join in a test. Gives its
/// path.
[[nodiscard]] QString writeBusConfiguration(const QString& folder, const QStringList& services);

/// Lets the bus of that folder, which may run, start these as well from now on.
void offerServices(const QString& folder, const QStringList& services);

}  // namespace tralio
