#include "platform/linux/helpers/serving.h"

#include <cstdio>
#include <string_view>

namespace tralio::serving {

const char* argument() {
    return "--serve=" TRALIO_VERSION;
}

std::optional<int> whyNot(int argc, char** argv, const char* job) {
    const std::string_view given = argc == 2 ? argv[1] : "";
    if (given == argument())
        return std::nullopt;
    if (given.substr(0, given.find('=')) == "--serve") {
        std::fputs("Tralio is of another version than its helper, and has to be started again.\n", stderr);
        return otherVersion;
    }
    std::fprintf(stderr, "This program is started by Tralio, to %s.\n", job);
    return startedByHand;
}

}  // namespace tralio::serving
