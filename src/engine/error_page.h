#pragma once

#include <QString>

/// Servers answer with a page for people where something stands between us and the service.
namespace tralio::error_page {

/// The message as it is, or if it is an HTML page what that says in its title, or else the first of the words
/// that it shows, which may be none. Takes time in proportion to the message, whatever is in it.
[[nodiscard]] QString words(const QString& message);

}  // namespace tralio::error_page
