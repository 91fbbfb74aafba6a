// The property list of an application bundle.

#include "fuzz/fuzz.h"
#include "update/info_plist.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    (void)infoPlistText(fileOf(input), u"CFBundleShortVersionString");
}
