#include "ui/kit/text_style.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace tralio {

void loadFontsAsDrawn() {
    // WORKAROUND: Qt (6.4 and 6.8) enables FreeType's stem darkening, which makes fonts like Inter heavier by
    // up to half a weight. Its amount can only be set in the environment, which FreeType reads when the first
    // font is loaded; programs that we start must not inherit it.
    constexpr auto variable = "FREETYPE_PROPERTIES";
    static bool isDone = qEnvironmentVariableIsSet(variable);
    if (std::exchange(isDone, true))
        return;
    qputenv(variable, "cff:darkening-parameters=500,30,1000,30,1667,30,2333,30");
    (void)QFontMetricsF(QFont(u"Inter"_s)).ascent();
    qunsetenv(variable);
}

QFont fontFor(const TextStyle& style) {
    // Emoji are looked for in their font before the toolkit asks all others one by one, by 2.4 KB each.
    static const QStringList proportional{u"Inter"_s, u"Noto Sans"_s, u"Noto Sans CJK JP"_s,
        u"Noto Color Emoji"_s, u"Noto Sans Symbols2"_s,
        QFontDatabase::systemFont(QFontDatabase::GeneralFont).family()};
    static const QStringList fixed{u"Noto Sans Mono"_s, u"DejaVu Sans Mono"_s,
        QFontDatabase::systemFont(QFontDatabase::FixedFont).family()};
    loadFontsAsDrawn();
    QFont font;
    font.setFamilies(style.fixedWidth ? fixed : proportional);
    font.setPixelSize(style.size);
    font.setWeight(QFont::Weight(int(style.weight)));
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleHint(style.fixedWidth ? QFont::Monospace : QFont::SansSerif);
    if (style.spacing != 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, style.size * style.spacing / 100);
    return font;
}

void loadFonts() {
    constexpr auto medium = Weight::medium;
    for (const TextStyle& style : {text::body, text::body.with(medium), text::caption,
             text::caption.with(medium), text::caption.with(Weight::semibold), text::smallCaption,
             text::smallCaption.with(medium), text::menu, text::panelTitle})
        (void)QFontMetricsF(fontFor(style)).horizontalAdvance(u"Dịch"_s);
}

qreal baselineOf(const TextStyle& style, qreal devicePixelRatio) {
    const QFontMetricsF metrics(fontFor(style));
    const qreal middle = (style.line - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent();
    // On high-density screens rounds down, as the drawings do; on others to the nearest pixel, where rounding
    // down would be visible.
    constexpr qreal inexactness = 0.01;
    const qreal share = devicePixelRatio < 1.5 ? 0.5 : -inexactness;
    return std::floor(middle * devicePixelRatio + share) / devicePixelRatio;
}

}  // namespace tralio
