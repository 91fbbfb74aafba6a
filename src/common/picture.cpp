#include "common/picture.h"

#include <algorithm>

namespace tralio {

QString bestPictureFormat(const QStringList& offered) {
    for (const char* format : pictureFormats)
        if (offered.contains(QLatin1String(format)))
            return QLatin1String(format);
    // The recogniser finds out whether it can decode another format.
    const auto other =
        std::ranges::find_if(offered, [](const QString& format) { return format.startsWith(u"image/"); });
    return other == offered.end() ? QString() : *other;
}

}  // namespace tralio
