// The property list of an application bundle.

#include "fuzz/fuzz.h"
#include "update/info_plist.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    (void)infoPlistText(fuzz::fileOf(fuzz::bytes(data, size)), u"CFBundleShortVersionString");
    return 0;
}
