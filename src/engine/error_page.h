#pragma once

#include <QString>

/// Extracts readable words from HTML error pages, with which proxies and gateways between us and the service
/// answer.
namespace tralio::error_page {

/// The message unchanged, or if it is an HTML page its title, or else the first words that it shows, which
/// may be none. Takes time in proportion to the length of the message, whatever it contains.
[[nodiscard]] QString words(const QString& message);

}  // namespace tralio::error_page
