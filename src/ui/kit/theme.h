#pragma once

#include <QObject>

#include "ui/kit/colors.h"

namespace tralio {

/// The appearance that the desktop asks for.
struct Appearance {
    bool dark = false;
    QColor accent = Colors::defaultAccent();
    bool reducedMotion = false;

    bool operator==(const Appearance&) const = default;
};

/// The appearance in use: one per process, main thread only.
class Theme final : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static Theme& current();

    /// Changes the appearance: emits `changed`, then repaints every widget.
    static void setAppearance(const Appearance& appearance);

    [[nodiscard]] const Appearance& appearance() const { return m_appearance; }
    [[nodiscard]] QColor color(ColorRole role) const { return m_colors[role]; }

    /// The duration of an animation in milliseconds; 0 when the desktop asks for reduced motion.
    [[nodiscard]] int duration(int milliseconds) const {
        return m_appearance.reducedMotion ? 0 : milliseconds;
    }

Q_SIGNALS:
    /// For what stores colours and not roles, such as the palette of a Qt text editor.
    void changed();

private:
    Theme();

    Appearance m_appearance;
    Colors m_colors;
};

[[nodiscard]] inline QColor color(ColorRole role) {
    return Theme::current().color(role);
}

namespace radius {

inline constexpr int window = 12;
inline constexpr int section = 10;
inline constexpr int tile = 9;
inline constexpr int block = 8;
inline constexpr int control = 6;
inline constexpr int small = 5;
inline constexpr int chip = 4;
inline constexpr int tiny = 3;

}  // namespace radius

}  // namespace tralio
