#include "programs/recogniser/reading/language_packs.h"

#include <array>

namespace tralio {
namespace {

struct Language {
    QStringView pack;
    QStringView tag;
};

constexpr std::array languages{
    Language{u"vie", u"vi-VN"},
    Language{u"eng", u"en-US"},
    Language{u"chi_sim", u"zh-Hans"},
    Language{u"jpn", u"ja-JP"},
    Language{u"kor", u"ko-KR"},
    Language{u"fra", u"fr-FR"},
    Language{u"deu", u"de-DE"},
    Language{u"spa", u"es-ES"},
    Language{u"rus", u"ru-RU"},
};

}  // namespace

QStringList knownPacks() {
    QStringList packs;
    for (const Language& language : languages)
        packs += language.pack.toString();
    return packs;
}

QStringList tagsOfPacks(const QStringList& packs) {
    QStringList tags;
    for (const Language& language : languages)
        if (packs.contains(language.pack))
            tags += language.tag.toString();
    return tags;
}

QStringList packsOfTags(const QStringList& tags, const QStringList& installed) {
    QStringList packs;
    for (const Language& language : languages)
        if (tags.contains(language.tag) && installed.contains(language.pack))
            packs += language.pack.toString();
    return packs;
}

}  // namespace tralio
