// The update server's manifest.

#include "common/localized_error.h"
#include "fuzz/fuzz.h"
#include "update/app_update_info.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    try {
        const AppUpdateInfo info = AppUpdateInfo::fromJson(input);
        require(AppUpdateInfo::fromJson(info.toJson()) == info, "what was read is written and read again");
    } catch (const LocalizedError&) {
        // In words.
    }
}
