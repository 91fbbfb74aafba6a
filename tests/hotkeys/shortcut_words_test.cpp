#include "hotkeys/shortcut_words.h"

#include "support/testing.h"

namespace tralio {
namespace {

TEST(ShortcutWords, name_the_keys_of_a_pc_wherever_a_text_has_symbols_and_leave_the_rest_alone) {
    struct Case {
        QString text;
        QString words;
        QString shortcuts;
    };
    const Case cases[] = {
        {u"⌘ ⇧ D"_s, u"Super + Shift + D"_s, u"Super + Shift + D"_s},
        {u"Chụp: ⌃ ⌥ Space"_s, u"Chụp: Ctrl + Alt + Space"_s, u"Ctrl + Alt + Space"_s},
        {u"⌃ Key 123"_s, u"Ctrl + Left"_s, u"Ctrl + Left"_s},
        {u"⌥ Key 116"_s, u"Alt + Page Up"_s, u"Alt + Page Up"_s},
        {u"⌥ Key 24"_s, u"Alt + Equal"_s, u"Alt + Equal"_s},
        {u"⌥ Key 83"_s, u"Alt + Num 1"_s, u"Alt + Num 1"_s},
        {u"⌥ Key 999"_s, u"Alt + Key 999"_s, u"Alt + Key 999"_s},
        {u"bấm ⌥D hoặc ⌘↵, rồi ⌥D"_s, u"bấm Alt + D hoặc Super + Enter, rồi Alt + D"_s,
            u"Alt + D, Super + Enter"_s},
        {u"(có ⌥, ⌘ hoặc ⌃). Bấm Esc"_s, u"(có Alt, Super hoặc Ctrl). Bấm Esc"_s, u"Alt, Super, Ctrl"_s},
        {u"⌥ Option"_s, u"Alt"_s, u"Alt"_s},
        {u"Tralio (↵ Enter)"_s, u"Tralio (↵ Enter)"_s, QString()},
        {u"⌥"_s, u"Alt"_s, u"Alt"_s},
        {QString(), QString(), QString()},
    };
    for (const auto& [text, words, shortcuts] : cases) {
        EXPECT_EQ(keysInWords(text), words);
        EXPECT_EQ(shortcutsInWords(text), shortcuts);
    }
}

}  // namespace
}  // namespace tralio
