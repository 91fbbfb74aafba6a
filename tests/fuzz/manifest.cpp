// The update server's manifest.

#include "common/localized_error.h"
#include "fuzz/fuzz.h"
#include "update/app_update_info.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    try {
        const AppUpdateInfo info = AppUpdateInfo::fromJson(fuzz::bytes(data, size));
        fuzz::require(
            AppUpdateInfo::fromJson(info.toJson()) == info, "what was read is written and read again");
    } catch (const LocalizedError&) {
        // In words.
    }
    return 0;
}
