#include "common/picture.h"

namespace tralio {

QString bestPictureFormat(const QStringList& offered) {
    for (const char* format : pictureFormats)
        if (offered.contains(QLatin1String(format)))
            return QLatin1String(format);
    return {};
}

}  // namespace tralio
