#include "programs/snip/scale_settings.h"

#include <algorithm>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr double dotsPerInchAtScaleOne = 96;

std::optional<double> positive(const QString& text) {
    bool isNumber = false;
    const double number = text.trimmed().toDouble(&isNumber);
    return isNumber && number > 0 ? std::optional(number) : std::nullopt;
}

std::optional<double> fromEnvironment(const char* name) {
    return positive(qEnvironmentVariable(name));
}

std::optional<double> resolutionOf(const QString& resources) {
    for (const QString& line : resources.split(u'\n'))
        if (line.startsWith(u"Xft.dpi:"))
            return positive(line.section(u':', 1));
    return std::nullopt;
}

}  // namespace

ScaleSettings ScaleSettings::fromSession(const QString& resources) {
    ScaleSettings settings;
    settings.m_everywhere = fromEnvironment("QT_SCALE_FACTOR").value_or(1);

    auto resolution = fromEnvironment("QT_FONT_DPI");
    if (!resolution)
        resolution = resolutionOf(resources);
    settings.m_ordinary =
        resolution ? *resolution / dotsPerInchAtScaleOne : fromEnvironment("GDK_SCALE").value_or(1);

    // Either "2;1.5", in the order of the monitors, or "DP-1=2;HDMI-1=1.5".
    const QStringList entries = qEnvironmentVariable("QT_SCREEN_SCALE_FACTORS").split(u';');
    for (int i = 0; i < entries.size(); ++i) {
        const QString name = entries[i].section(u'=', 0, -2);
        const auto scale = positive(entries[i].section(u'=', -1));
        if (scale && name.isEmpty())
            settings.m_byIndex.insert(i, *scale);
        else if (scale)
            settings.m_byName.insert(name, *scale);
    }
    return settings;
}

double ScaleSettings::scaleOf(const QString& monitorName, int monitorIndex) const {
    const double own = m_byName.value(monitorName, m_byIndex.value(monitorIndex, m_ordinary));
    return std::clamp(own * m_everywhere, 1.0, 8.0);
}

}  // namespace tralio
