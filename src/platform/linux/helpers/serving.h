#pragma once

#include <optional>

/// How a helper is started, and how it checks that it is of the program's own version: an update replaces the
/// files while the program runs on, and the protocol between the two may have changed.
namespace tralio::serving {

/// The argument with which the program starts its helpers.
[[nodiscard]] const char* argument();

/// The exit status of a helper that does not serve.
enum ExitStatus : int { startedByHand = 2, otherVersion = 3 };

/// For a helper's main function: nothing if it is to serve, else the status to exit with; the reason has been
/// written to the standard error.
/// @param job what the helper does, in English
[[nodiscard]] std::optional<int> whyNot(int argc, char** argv, const char* job);

}  // namespace tralio::serving
