#pragma once

#include <QStringView>

namespace tralio {

/// Whether a host is this machine itself: what goes there crosses no network.
[[nodiscard]] bool isLoopback(QStringView host);

}  // namespace tralio
