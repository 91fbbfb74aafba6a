#pragma once

#include <optional>

/// How a helper is started, and that it is of the program's own version: an update replaces the files beneath
/// a program that runs on, and what the two say to each other may have changed.
namespace tralio::serving {

/// What the program starts its helpers with.
[[nodiscard]] const char* argument();

/// How a helper ends that does not serve.
enum ExitStatus : int { startedByHand = 2, otherVersion = 3 };

/// For a helper's main: nothing if it is to serve, else the status to end with, and a line about it is on the
/// standard error.
/// @param job what it would do, in English
[[nodiscard]] std::optional<int> whyNot(int argc, char** argv, const char* job);

}  // namespace tralio::serving
