#pragma once

#include <QObject>

#include "ui/kit/colors.h"

namespace tralio {

/// What the desktop asks of the program's looks.
struct Appearance {
    bool dark = false;
    QColor accent = Colors::defaultAccent();
    bool reducedMotion = false;

    bool operator==(const Appearance&) const = default;
};

/// The looks in force: one per process, used from the main thread.
class Theme final : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static Theme& current();

    /// Puts another appearance in force: `changed` is emitted, then every widget is repainted.
    static void setAppearance(const Appearance& appearance);

    [[nodiscard]] const Appearance& appearance() const { return m_appearance; }
    [[nodiscard]] QColor color(ColorRole role) const { return m_colors[role]; }

    /// The length of a motion in milliseconds: as given, or none when the desktop asks for reduced motion.
    [[nodiscard]] int duration(int milliseconds) const {
        return m_appearance.reducedMotion ? 0 : milliseconds;
    }

Q_SIGNALS:
    /// For what keeps colours instead of roles, as a native text editor's palette does.
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
