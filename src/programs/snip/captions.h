#pragma once

#include <QGuiApplication>
#include <QImage>
#include <QSize>

namespace tralio {

/// The texts of the overlay. Making one starts the toolkit, which loads the fonts and takes longer than all
/// the rest: make it when the overlay is on the screen. The toolkit gets no display, as the overlay is not
/// its.
class Captions final {
public:
    enum class Hint { Draw, Keys };

    Captions();

    /// "W × H" in pixels.
    [[nodiscard]] QImage drawSize(QSize pixels, double scale) const;
    /// What one can do now; smaller than scaled where the monitor is narrow.
    [[nodiscard]] QImage drawHint(Hint hint, double scale, int mostPixels) const;

private:
    int m_argumentCount = 3;
    char m_name[12] = "tralio-snip";
    char m_option[10] = "-platform";
    char m_platform[10] = "offscreen";
    char* m_arguments[4] = {m_name, m_option, m_platform, nullptr};
    QGuiApplication m_toolkit;
};

}  // namespace tralio
