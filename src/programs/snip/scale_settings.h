#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace tralio {

/// The scale of each monitor, from the settings that Qt programs on X11 obey (so that the picker's scale
/// matches the rest of the program), or, if the desktop sets no resolution, from GTK's.
class ScaleSettings final {
public:
    /// `resources` is the text of the root window's RESOURCE_MANAGER property, which may have a line for
    /// `Xft.dpi`.
    [[nodiscard]] static ScaleSettings fromSession(const QString& resources);

    /// Pixels per logical pixel, from 1 to 8.
    [[nodiscard]] double scaleOf(const QString& monitorName, int monitorIndex) const;

private:
    double m_everywhere = 1;
    double m_ordinary = 1;  ///< for monitors without a scale of their own
    QHash<QString, double> m_byName;
    QHash<int, double> m_byIndex;
};

}  // namespace tralio
