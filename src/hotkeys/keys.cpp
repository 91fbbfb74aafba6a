#include "hotkeys/keys.h"

#include <QStringBuilder>

#include <algorithm>
#include <array>

namespace tralio {
namespace {

// clang-format off
constexpr std::array keys{
    Key{KeyCode{0},  30, 0x0061, "a",            u"A"},
    Key{KeyCode{1},  31, 0x0073, "s",            u"S"},
    Key{KeyCode{2},  32, 0x0064, "d",            u"D"},
    Key{KeyCode{3},  33, 0x0066, "f",            u"F"},
    Key{KeyCode{4},  35, 0x0068, "h",            u"H"},
    Key{KeyCode{5},  34, 0x0067, "g",            u"G"},
    Key{KeyCode{6},  44, 0x007a, "z",            u"Z"},
    Key{KeyCode{7},  45, 0x0078, "x",            u"X"},
    Key{KeyCode{8},  46, 0x0063, "c",            u"C"},
    Key{KeyCode{9},  47, 0x0076, "v",            u"V"},
    Key{KeyCode{10}, 86, 0x0000, nullptr,        u""},
    Key{KeyCode{11}, 48, 0x0062, "b",            u"B"},
    Key{KeyCode{12}, 16, 0x0071, "q",            u"Q"},
    Key{KeyCode{13}, 17, 0x0077, "w",            u"W"},
    Key{KeyCode{14}, 18, 0x0065, "e",            u"E"},
    Key{KeyCode{15}, 19, 0x0072, "r",            u"R"},
    Key{KeyCode{16}, 21, 0x0079, "y",            u"Y"},
    Key{KeyCode{17}, 20, 0x0074, "t",            u"T"},
    Key{KeyCode{18}, 2,  0x0031, "1",            u""},
    Key{KeyCode{19}, 3,  0x0032, "2",            u""},
    Key{KeyCode{20}, 4,  0x0033, "3",            u""},
    Key{KeyCode{21}, 5,  0x0034, "4",            u""},
    Key{KeyCode{22}, 7,  0x0036, "6",            u""},
    Key{KeyCode{23}, 6,  0x0035, "5",            u""},
    Key{KeyCode{24}, 13, 0x003d, "equal",        u""},
    Key{KeyCode{25}, 10, 0x0039, "9",            u""},
    Key{KeyCode{26}, 8,  0x0037, "7",            u""},
    Key{KeyCode{27}, 12, 0x002d, "minus",        u""},
    Key{KeyCode{28}, 9,  0x0038, "8",            u""},
    Key{KeyCode{29}, 11, 0x0030, "0",            u""},
    Key{KeyCode{30}, 27, 0x005d, "bracketright", u""},
    Key{KeyCode{31}, 24, 0x006f, "o",            u"O"},
    Key{KeyCode{32}, 22, 0x0075, "u",            u"U"},
    Key{KeyCode{33}, 26, 0x005b, "bracketleft",  u""},
    Key{KeyCode{34}, 23, 0x0069, "i",            u"I"},
    Key{KeyCode{35}, 25, 0x0070, "p",            u"P"},
    Key{KeyCode{36}, 28, 0xff0d, "Return",       u"Return"},
    Key{KeyCode{37}, 38, 0x006c, "l",            u"L"},
    Key{KeyCode{38}, 36, 0x006a, "j",            u"J"},
    Key{KeyCode{39}, 40, 0x0027, "apostrophe",   u""},
    Key{KeyCode{40}, 37, 0x006b, "k",            u"K"},
    Key{KeyCode{41}, 39, 0x003b, "semicolon",    u""},
    Key{KeyCode{42}, 43, 0x005c, "backslash",    u""},
    Key{KeyCode{43}, 51, 0x002c, "comma",        u""},
    Key{KeyCode{44}, 53, 0x002f, "slash",        u""},
    Key{KeyCode{45}, 49, 0x006e, "n",            u"N"},
    Key{KeyCode{46}, 50, 0x006d, "m",            u"M"},
    Key{KeyCode{47}, 52, 0x002e, "period",       u""},
    Key{KeyCode{48}, 15, 0xff09, "Tab",          u"Tab"},
    Key{KeyCode{49}, 57, 0x0020, "space",        u"Space"},
    Key{KeyCode{50}, 41, 0x0060, "grave",        u""},
    Key{KeyCode{51}, 14, 0xff08, "BackSpace",    u""},
    Key{KeyCode{53}, 1,  0xff1b, "Escape",       u"Esc"},
    Key{KeyCode{54}, 126,0xffec, nullptr,        u""},
    Key{KeyCode{55}, 125,0xffeb, nullptr,        u""},
    Key{KeyCode{56}, 42, 0xffe1, nullptr,        u""},
    Key{KeyCode{57}, 58, 0xffe5, nullptr,        u""},
    Key{KeyCode{58}, 56, 0xffe9, nullptr,        u""},
    Key{KeyCode{59}, 29, 0xffe3, nullptr,        u""},
    Key{KeyCode{60}, 54, 0xffe2, nullptr,        u""},
    Key{KeyCode{61}, 100,0xffea, nullptr,        u""},
    Key{KeyCode{62}, 97, 0xffe4, nullptr,        u""},
    Key{KeyCode{64}, 187,0xffce, "F17",          u""},
    Key{KeyCode{65}, 83, 0xffae, "KP_Decimal",   u""},
    Key{KeyCode{67}, 55, 0xffaa, "KP_Multiply",  u""},
    Key{KeyCode{69}, 78, 0xffab, "KP_Add",       u""},
    Key{KeyCode{71}, 69, 0xff7f, nullptr,        u""},
    Key{KeyCode{72}, 115,0x0000, nullptr,        u""},
    Key{KeyCode{73}, 114,0x0000, nullptr,        u""},
    Key{KeyCode{74}, 113,0x0000, nullptr,        u""},
    Key{KeyCode{75}, 98, 0xffaf, "KP_Divide",    u""},
    Key{KeyCode{76}, 96, 0xff8d, "KP_Enter",     u""},
    Key{KeyCode{78}, 74, 0xffad, "KP_Subtract",  u""},
    Key{KeyCode{79}, 188,0xffcf, "F18",          u""},
    Key{KeyCode{80}, 189,0xffd0, "F19",          u""},
    Key{KeyCode{81}, 117,0xffbd, "KP_Equal",     u""},
    Key{KeyCode{82}, 82, 0xffb0, "KP_0",         u""},
    Key{KeyCode{83}, 79, 0xffb1, "KP_1",         u""},
    Key{KeyCode{84}, 80, 0xffb2, "KP_2",         u""},
    Key{KeyCode{85}, 81, 0xffb3, "KP_3",         u""},
    Key{KeyCode{86}, 75, 0xffb4, "KP_4",         u""},
    Key{KeyCode{87}, 76, 0xffb5, "KP_5",         u""},
    Key{KeyCode{88}, 77, 0xffb6, "KP_6",         u""},
    Key{KeyCode{89}, 71, 0xffb7, "KP_7",         u""},
    Key{KeyCode{90}, 190,0xffd1, "F20",          u""},
    Key{KeyCode{91}, 72, 0xffb8, "KP_8",         u""},
    Key{KeyCode{92}, 73, 0xffb9, "KP_9",         u""},
    Key{KeyCode{93}, 124,0x0000, nullptr,        u""},
    Key{KeyCode{94}, 89, 0x0000, nullptr,        u""},
    Key{KeyCode{95}, 95, 0x0000, nullptr,        u""},
    Key{KeyCode{96}, 63, 0xffc2, "F5",           u""},
    Key{KeyCode{97}, 64, 0xffc3, "F6",           u""},
    Key{KeyCode{98}, 65, 0xffc4, "F7",           u""},
    Key{KeyCode{99}, 61, 0xffc0, "F3",           u""},
    Key{KeyCode{100}, 66, 0xffc5, "F8",           u""},
    Key{KeyCode{101}, 67, 0xffc6, "F9",           u""},
    Key{KeyCode{102}, 123,0x0000, nullptr,        u""},
    Key{KeyCode{103}, 87, 0xffc8, "F11",          u""},
    Key{KeyCode{104}, 122,0x0000, nullptr,        u""},
    Key{KeyCode{105}, 183,0xffca, "F13",          u""},
    Key{KeyCode{106}, 186,0xffcd, "F16",          u""},
    Key{KeyCode{107}, 184,0xffcb, "F14",          u""},
    Key{KeyCode{109}, 68, 0xffc7, "F10",          u""},
    Key{KeyCode{110}, 127,0xff67, "Menu",         u""},
    Key{KeyCode{111}, 88, 0xffc9, "F12",          u""},
    Key{KeyCode{113}, 185,0xffcc, "F15",          u""},
    Key{KeyCode{114}, 110,0xff63, "Insert",       u""},
    Key{KeyCode{115}, 102,0xff50, "Home",         u""},
    Key{KeyCode{116}, 104,0xff55, "Page_Up",      u""},
    Key{KeyCode{117}, 111,0xffff, "Delete",       u""},
    Key{KeyCode{118}, 62, 0xffc1, "F4",           u""},
    Key{KeyCode{119}, 107,0xff57, "End",          u""},
    Key{KeyCode{120}, 60, 0xffbf, "F2",           u""},
    Key{KeyCode{121}, 109,0xff56, "Page_Down",    u""},
    Key{KeyCode{122}, 59, 0xffbe, "F1",           u""},
    Key{KeyCode{123}, 105,0xff51, "Left",         u""},
    Key{KeyCode{124}, 106,0xff53, "Right",        u""},
    Key{KeyCode{125}, 108,0xff54, "Down",         u""},
    Key{KeyCode{126}, 103,0xff52, "Up",           u""},};
// clang-format on

constexpr quint32 keysymF1 = 0xffbe;
constexpr quint32 keysymF20 = 0xffd1;

}  // namespace

Modifiers modifiersOfFlags(quint32 flags) {
    Modifiers modifiers;
    for (const ModifierNames& names : modifierNames)
        modifiers.setFlag(names.modifier, (flags & names.flag) != 0);
    return modifiers;
}

bool canBeHotKey(const KeyCombination& combination) {
    if (combination.modifiers & (Modifier::control | Modifier::option | Modifier::command))
        return true;
    const Key* key = keyWith(combination.key);
    return key && key->keysym >= keysymF1 && key->keysym <= keysymF20;
}

QString readableShortcut(const KeyCombination& combination) {
    QString text;
    for (const ModifierNames& names : modifierNames)
        if (combination.modifiers.testFlag(names.modifier))
            text += names.symbol;
    const Key* key = keyWith(combination.key);
    if (key && !key->label.isEmpty())
        return text % key->label;
    return text % u"Key " % QString::number(quint32(combination.key));
}

const Key* keyWith(KeyCode code) {
    const auto* const found =
        std::find_if(keys.begin(), keys.end(), [code](const Key& key) { return key.code == code; });
    return found == keys.end() ? nullptr : found;
}

const Key* keyAtEvdev(quint32 evdevCode) {
    const auto* const found = std::find_if(
        keys.begin(), keys.end(), [evdevCode](const Key& key) { return key.evdev == evdevCode; });
    return found == keys.end() ? nullptr : found;
}

}  // namespace tralio
