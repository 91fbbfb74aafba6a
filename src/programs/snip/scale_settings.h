#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace tralio {

/// How large things are shown on each monitor, by the settings that Qt programs on X11 obey (so that what the
/// picker shows is as large as the rest of the program) and, where the desktop gives no resolution, by GTK's.
class ScaleSettings final {
public:
    /// `resources` is the text of the root window's RESOURCE_MANAGER, with a line for `Xft.dpi`.
    [[nodiscard]] static ScaleSettings fromSession(const QString& resources);

    /// Pixels for each logical pixel, from 1 to 8.
    [[nodiscard]] double scaleOf(const QString& monitorName, int monitorIndex) const;

private:
    double m_everywhere = 1;
    double m_ordinary = 1;  ///< of monitors without a scale of their own
    QHash<QString, double> m_byName;
    QHash<int, double> m_byIndex;
};

}  // namespace tralio
