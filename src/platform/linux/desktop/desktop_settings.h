#pragma once

#include <QUrl>

namespace tralio {

/// Opens a link in the default program; an `x-apple.systempreferences:` link in the settings program of the
/// desktop that runs, where it has one.
void openDesktopURL(const QUrl& url);

}  // namespace tralio
