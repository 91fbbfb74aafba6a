#pragma once

#include <QUrl>

namespace tralio {

/// Opens a link in the default program. An `x-apple.systempreferences:` link opens the settings program of
/// the running desktop, if it has one.
void openDesktopURL(const QUrl& url);

}  // namespace tralio
