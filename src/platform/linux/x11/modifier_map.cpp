#include "platform/linux/x11/modifier_map.h"

#include <X11/keysym.h>
#include <algorithm>
#include <initializer_list>

#include "platform/linux/x11/key_symbols.h"

namespace tralio {
namespace {

/// The modifier bits to which a key with one of `keysyms` is mapped. There may be no key with a keysym, or
/// several.
quint16 bitsOf(xcb_key_symbols_t* symbols, const xcb_get_modifier_mapping_reply_t& mapping,
    std::initializer_list<xcb_keysym_t> keysyms) {
    constexpr int columns = 8;  // two groups of layouts, with four levels each
    const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(&mapping);
    const int perModifier = mapping.keycodes_per_modifier;
    quint16 bits = 0;
    // The few mapped keys are asked for their keysyms: to look for a keysym, xcb-util goes over the keyboard.
    for (int i = 0; i < 8 * perModifier; ++i)
        for (int column = 0; codes[i] != XCB_NO_SYMBOL && column < columns; ++column)
            if (std::ranges::count(keysyms, xcb_key_symbols_get_keysym(symbols, codes[i], column)) != 0)
                bits |= static_cast<quint16>(1U << (i / perModifier));
    return bits;
}

/// The lowest bit: a held key sets one bit, even if other keys with its meaning are mapped to others.
quint16 firstBit(quint16 bits) {
    return static_cast<quint16>(bits & -bits);
}

/// Every subset of the bits, from none to all.
std::vector<quint16> combinationsOf(quint16 bits) {
    std::vector<quint16> combinations;
    quint16 combination = 0;
    do {
        combinations.push_back(combination);
        combination = static_cast<quint16>((combination - bits) & bits);
    } while (combination != 0);
    return combinations;
}

}  // namespace

ModifierMap::ModifierMap(const X11Connection& connection) {
    const KeySymbols symbols{xcb_key_symbols_alloc(connection.xcb())};
    const XcbPtr<xcb_get_modifier_mapping_reply_t> mapping{xcb_get_modifier_mapping_reply(
        connection.xcb(), xcb_get_modifier_mapping(connection.xcb()), nullptr)};
    quint16 locks = XCB_MOD_MASK_LOCK;
    if (symbols && mapping) {
        m_super = firstBit(bitsOf(symbols.get(), *mapping, {XK_Super_L, XK_Super_R}));
        m_alt = firstBit(bitsOf(symbols.get(), *mapping, {XK_Alt_L, XK_Alt_R}));
        locks |= bitsOf(symbols.get(), *mapping, {XK_Num_Lock, XK_Scroll_Lock});
    }
    if (m_super == 0)
        m_super = XCB_MOD_MASK_4;
    if (m_alt == 0)
        m_alt = XCB_MOD_MASK_1;
    locks &= static_cast<quint16>(~significant());
    m_lockCombinations = combinationsOf(locks);
}

std::vector<quint16> ModifierMap::significantCombinations() const {
    return combinationsOf(significant());
}

quint16 ModifierMap::stateFor(Modifiers modifiers) const {
    quint16 state = 0;
    if (modifiers.testFlag(Modifier::command))
        state |= m_super;
    if (modifiers.testFlag(Modifier::shift))
        state |= XCB_MOD_MASK_SHIFT;
    if (modifiers.testFlag(Modifier::option))
        state |= m_alt;
    if (modifiers.testFlag(Modifier::control))
        state |= XCB_MOD_MASK_CONTROL;
    return state;
}

std::vector<quint16> ModifierMap::withLocks(quint16 state) const {
    std::vector<quint16> states = m_lockCombinations;
    for (quint16& locks : states)
        locks |= state;
    return states;
}

quint16 ModifierMap::significant() const {
    return static_cast<quint16>(m_super | m_alt | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL);
}

}  // namespace tralio
