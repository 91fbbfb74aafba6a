#pragma once

#include <QString>

/// Servers answer with a page for people where something stands between us and the service.
namespace tralio::error_page {

/// What an HTML page says in its title, or else the first of the words that it shows. Takes time in
/// proportion to the page, whatever is in it.
[[nodiscard]] QString words(const QString& page);

}  // namespace tralio::error_page
