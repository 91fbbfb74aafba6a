#pragma once

#include <QFlags>
#include <QStringView>
#include <QtGlobal>

#include <optional>

namespace tralio {

/// A key by its physical position, as a virtual key code. Any code may occur; those that the program mentions
/// have names.
enum class KeyCode : quint32 {
    s = 1,
    d = 2,
    c = 8,
    t = 17,
    space = 49,
    escape = 53,
    rightCommand = 54,
    leftCommand = 55,
    leftShift = 56,
    leftOption = 58,
    leftControl = 59,
    rightShift = 60,
    rightOption = 61,
    rightControl = 62
};

/// The bits of a hot key's modifier mask, which is also the stored form.
enum class Modifier : quint32 { command = 0x100, shift = 0x200, option = 0x800, control = 0x1000 };
Q_DECLARE_FLAGS(Modifiers, Modifier)
Q_DECLARE_OPERATORS_FOR_FLAGS(Modifiers)

/// The modifiers among the flags of a key event, which have other bits: Command 0x100000, Shift 0x20000,
/// Option 0x80000, Control 0x40000. Other flags are ignored.
[[nodiscard]] Modifiers modifiersOfFlags(quint32 flags);

struct KeyCombination {
    KeyCode key{};
    Modifiers modifiers;

    bool operator==(const KeyCombination&) const = default;
};

/// Whether a combination may be taken away from all other programs. Without Control, Option or Command only a
/// function key may, since people type with the others.
[[nodiscard]] bool canBeHotKey(const KeyCombination& combination);

/// The display text of a shortcut: the symbols of its modifiers and the label of its key.
[[nodiscard]] QString readableShortcut(const KeyCombination& combination);

/// The names of one key in the different systems of a desktop.
struct Key {
    KeyCode code;
    quint8 evdev;       ///< as in linux/input-event-codes.h
    quint32 keysym;     ///< its symbol on a US keyboard, as in X11/keysymdef.h; 0 if it has none
    const char* name;   ///< the keysym's name, which desktop portals use; null if they have none
    QStringView label;  ///< in display texts; if empty, the key code is shown
};

/// Null for keys that a PC keyboard does not have.
[[nodiscard]] const Key* keyWith(KeyCode code);
[[nodiscard]] const Key* keyAtEvdev(quint32 evdevCode);

/// The names of one modifier. The table has them in the order of display texts.
struct ModifierNames {
    Modifier modifier;
    quint32 flag;        ///< of key events
    QStringView symbol;  ///< in display texts
    const char* name;    ///< in the triggers of desktop portals
};
inline constexpr ModifierNames modifierNames[] = {
    {Modifier::control, 0x40000, u"⌃ ", "CTRL"},
    {Modifier::option, 0x80000, u"⌥ ", "ALT"},
    {Modifier::shift, 0x20000, u"⇧ ", "SHIFT"},
    {Modifier::command, 0x100000, u"⌘ ", "LOGO"},
};

}  // namespace tralio
