#include "ui/kit/text_style.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tralio {

QFont fontFor(const TextStyle& style) {
    static const QStringList proportional{
        u"Inter"_s, u"Noto Sans"_s, QFontDatabase::systemFont(QFontDatabase::GeneralFont).family()};
    static const QStringList fixed{u"Noto Sans Mono"_s, u"DejaVu Sans Mono"_s,
        QFontDatabase::systemFont(QFontDatabase::FixedFont).family()};
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

int baselineOf(const TextStyle& style) {
    const QFontMetricsF metrics(fontFor(style));
    return int(std::lround((style.line - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent()));
}

}  // namespace tralio
