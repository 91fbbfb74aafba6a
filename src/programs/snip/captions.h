#pragma once

#include <QGuiApplication>
#include <QImage>
#include <QSize>

namespace tralio {

/// The texts of the overlay. Construction starts QGuiApplication and loads the fonts, which takes longer than
/// everything else, so construct it once the overlay is shown. Qt gets no display, since the overlay is drawn
/// without it.
class Captions final {
public:
    enum class Hint { Draw, Keys };

    Captions();

    /// "W × H" in pixels.
    [[nodiscard]] QImage drawSize(QSize pixels, double scale) const;
    /// The keys that can be used now; drawn at a smaller scale where the monitor is narrow.
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
