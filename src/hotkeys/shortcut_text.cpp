#include <QStringBuilder>

#include <array>
#include <utility>

#include "hotkeys/hot_key_service.h"

namespace tralio {
namespace {

/// A modifier in its two forms, with its symbol, in the order in which a shortcut is written.
struct Modifier {
    quint32 flag;
    quint32 mask;
    QStringView symbol;
};

constexpr std::array modifierTable{
    Modifier{0x40000, 4096, u"⌃ "},
    Modifier{0x80000, 2048, u"⌥ "},
    Modifier{0x20000, 512, u"⇧ "},
    Modifier{0x100000, 256, u"⌘ "},
};

constexpr std::array keyLabels{
    std::pair{0, u"A"},
    std::pair{1, u"S"},
    std::pair{2, u"D"},
    std::pair{3, u"F"},
    std::pair{4, u"H"},
    std::pair{5, u"G"},
    std::pair{6, u"Z"},
    std::pair{7, u"X"},
    std::pair{8, u"C"},
    std::pair{9, u"V"},
    std::pair{11, u"B"},
    std::pair{12, u"Q"},
    std::pair{13, u"W"},
    std::pair{14, u"E"},
    std::pair{15, u"R"},
    std::pair{16, u"Y"},
    std::pair{17, u"T"},
    std::pair{31, u"O"},
    std::pair{32, u"U"},
    std::pair{34, u"I"},
    std::pair{35, u"P"},
    std::pair{36, u"Return"},
    std::pair{37, u"L"},
    std::pair{38, u"J"},
    std::pair{40, u"K"},
    std::pair{45, u"N"},
    std::pair{46, u"M"},
    std::pair{48, u"Tab"},
    std::pair{49, u"Space"},
    std::pair{53, u"Esc"},
};

}  // namespace

quint32 HotKeyService::carbonModifiers(quint32 flags) {
    quint32 mask = 0;
    for (const Modifier& modifier : modifierTable)
        if (flags & modifier.flag)
            mask += modifier.mask;
    return mask;
}

QString HotKeyService::readableShortcut(quint16 keyCode, quint32 flags) {
    QString text;
    for (const Modifier& modifier : modifierTable)
        if (flags & modifier.flag)
            text += modifier.symbol;
    for (const auto& [code, label] : keyLabels)
        if (code == keyCode)
            return text % QStringView(label);
    return text % u"Key " % QString::number(keyCode);
}

}  // namespace tralio
