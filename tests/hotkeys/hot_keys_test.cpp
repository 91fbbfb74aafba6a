#include "hotkeys/shortcut_words.h"
#include "support/debug_log_file.h"
#include "support/fake_desktop.h"

namespace tralio {
namespace {

using Request = FakeHotKeyPlatform::Request;

/// What the settings hold: a virtual key code and a mask.
Request request(quint32 keyCode, quint32 modifiers, HotKeyID id) {
    return {{KeyCode{keyCode}, Modifiers::fromInt(modifiers)}, id};
}

struct HotKeys : testing::Test {
    void registerBoth() {
        service.registerGlobalHotKeys(
            2, 768, [this] { presses += u"text"_s; }, 1, 768, [this] { presses += u"ocr"_s; });
    }

    DebugLogFile log;
    FakeDesktop desktop;
    HotKeyService service{desktop.platform()};
    QStringList presses;
};

TEST_F(HotKeys, a_press_runs_the_action_that_is_set_for_its_id_when_the_event_handler_has_returned) {
    registerBoth();
    desktop.hotKeys.handler(ocrHotKeyID);
    desktop.hotKeys.handler(HotKeyID{0, 1});  // the signature is not looked at
    service.keys().onTextTrigger = [this] { presses += u"replaced"_s; };
    EXPECT_TRUE(presses.isEmpty());
    desktop.clock.advance(0ms);
    EXPECT_THAT(presses, ElementsAre(u"ocr"_s, u"replaced"_s));

    desktop.hotKeys.handler(std::nullopt);
    desktop.hotKeys.handler(HotKeyID{0x5452414C, 3});
    EXPECT_EQ(desktop.clock.pending(), 0) << "presses that mean nothing are ignored";
    service.keys().onTextTrigger = nullptr;
    desktop.hotKeys.handler(textHotKeyID);
    desktop.clock.advance(0ms);
    EXPECT_THAT(presses, testing::SizeIs(2));
}

TEST_F(HotKeys, are_registered_text_first_a_change_leaves_one_registration_and_a_refused_one_none) {
    registerBoth();
    EXPECT_THAT(desktop.hotKeys.registrations(),
        ElementsAre(request(2, 768, textHotKeyID), request(1, 768, ocrHotKeyID)));
    EXPECT_THAT(log.messages(),
        ElementsAre(u"Đăng ký phím tắt Text thành công: code=2, mods=768"_s,
            u"Đăng ký phím tắt OCR thành công: code=1, mods=768"_s));

    service.updateTextHotKey(17, 2048);
    service.updateTextHotKey(49, 2048);
    EXPECT_THAT(desktop.hotKeys.registrations(),
        ElementsAre(request(1, 768, ocrHotKeyID), request(49, 2048, textHotKeyID)));

    desktop.hotKeys.nextStatus = HotKeyStatus::taken;
    service.updateTextHotKey(0, 4294967295);
    EXPECT_THAT(desktop.hotKeys.registrations(), ElementsAre(request(1, 768, ocrHotKeyID)));
    desktop.hotKeys.nextStatus = HotKeyStatus::invalid;
    service.updateOCRHotKey(3, 256);
    EXPECT_THAT(log.messages().mid(4),
        ElementsAre(u"Lỗi đăng ký phím tắt Text (code: 0, mods: 4294967295): -9878"_s,
            u"Lỗi đăng ký phím tắt OCR (code: 3, mods: 256): -9879"_s));

    service.updateTextHotKey(2, 768);
    EXPECT_THAT(desktop.hotKeys.registrations(), ElementsAre(request(2, 768, textHotKeyID)));
}

TEST_F(HotKeys, exchange_their_combinations_whichever_is_changed_first) {
    registerBoth();
    service.updateTextHotKey(1, 768);  // which the other one has
    EXPECT_EQ(service.keys().textStatus(), HotKeyStatus::taken);
    service.updateOCRHotKey(2, 768);
    EXPECT_EQ(service.keys().textStatus(), HotKeyStatus::registered);
    EXPECT_THAT(desktop.hotKeys.registrations(),
        ElementsAre(request(2, 768, ocrHotKeyID), request(1, 768, textHotKeyID)));

    // Also where the one that is changed was promised for later, and has no registration.
    desktop.hotKeys.nextStatus = HotKeyStatus::unavailable;
    service.updateTextHotKey(7, 768);
    desktop.hotKeys.nextStatus = HotKeyStatus::taken;
    service.updateOCRHotKey(7, 768);
    service.updateTextHotKey(2, 768);
    EXPECT_EQ(service.keys().ocrStatus(), HotKeyStatus::registered);
    service.updateOCRHotKey(2, 256);

    // What another program has is not asked for again.
    desktop.hotKeys.nextStatus = HotKeyStatus::taken;
    service.updateTextHotKey(9, 768);
    service.updateOCRHotKey(3, 768);
    EXPECT_EQ(service.keys().textStatus(), HotKeyStatus::taken);
}

TEST(ShortcutText, is_the_symbols_in_their_order_and_the_label_of_the_key) {
    constexpr quint32 capsLock = 0x10000, shift = 0x20000, control = 0x40000, option = 0x80000,
                      command = 0x100000, function = 0x800000;
    const std::tuple<quint16, quint32, QString, quint32> cases[] = {{2, command | shift, u"⇧ ⌘ D"_s, 768},
        {18, option, u"⌥ Key 18"_s, 2048}, {49, control, u"⌃ Space"_s, 4096},
        {65535, capsLock | function, u"Key 65535"_s, 0},
        {36, control | option | shift | command | capsLock, u"⌃ ⌥ ⇧ ⌘ Return"_s, 6912}};
    for (const auto& [keyCode, flags, text, modifiers] : cases) {
        EXPECT_EQ(HotKeyService::readableShortcut(keyCode, flags), text);
        EXPECT_EQ(HotKeyService::carbonModifiers(flags), modifiers);
    }
}

TEST(Keys, are_labelled_by_what_they_mean_and_each_has_a_place_of_its_own) {
    for (quint32 code = 0; code < 256; ++code) {
        const Key* key = keyWith(KeyCode{code});
        if (!key)
            continue;
        EXPECT_EQ(keyAtEvdev(key->evdev), key);
        if (key->label.isEmpty())
            continue;
        EXPECT_TRUE(QString::fromLatin1(key->name).startsWith(key->label, Qt::CaseInsensitive)) << code;
        if (key->label.size() == 1)
            EXPECT_EQ(key->keysym, key->label.front().toLower().unicode()) << code;
    }
}

TEST(ShortcutWords, name_the_keys_of_a_pc_wherever_a_text_has_symbols_and_leave_the_rest_alone) {
    const std::tuple<QString, QString, QString> cases[] = {
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
        {u"⌥ Option"_s, u"Alt"_s, u"Alt"_s}, {u"Tralio (↵ Enter)"_s, u"Tralio (↵ Enter)"_s, QString()},
        {u"⌥"_s, u"Alt"_s, u"Alt"_s}, {QString(), QString(), QString()}};
    for (const auto& [text, words, shortcuts] : cases) {
        EXPECT_EQ(keysInWords(text), words);
        EXPECT_EQ(shortcutsInWords(text), shortcuts);
    }
}

FakeElement item(
    std::optional<QString> title, std::optional<QString> character = std::nullopt, bool pressWorks = true) {
    return {.title = std::move(title), .commandCharacter = std::move(character), .pressWorks = pressWorks};
}

/// A menu bar with one menu for each list of items.
FakeElement menuBar(std::initializer_list<std::vector<FakeElement>> menus) {
    FakeElement bar;
    for (const auto& items : menus)
        bar.children.push_back({.children = {{.children = items}}});
    return bar;
}

using MenuCopy = HotKeys;

TEST_F(MenuCopy, presses_the_first_item_that_means_copy_whatever_its_menu_and_leaves_others_alone) {
    const std::tuple<const char*, FakeElement, QStringList> cases[] = {
        {"by title", menuBar({{item(u"Cut"_s)}, {item(u"Paste"_s), item(u"Copy"_s)}}), {u"Copy"_s}},
        {"by title in Vietnamese", menuBar({{item(u"SAO CHÉP liên kết"_s)}}), {u"SAO CHÉP liên kết"_s}},
        {"by key", menuBar({{item(u"Chép"_s, u"c"_s)}}), {u"Chép"_s}},
        {"a title that only begins so comes first", menuBar({{item(u"Copy Link"_s)}, {item(u"Copy"_s)}}),
            {u"Copy Link"_s}},
        {"an item without a title", menuBar({{item(std::nullopt, u"C"_s)}}), {u""_s}},
        {"past menus without items", menuBar({{}, {item(u"copy"_s)}}), {u"copy"_s}},
        {"it goes on when an item cannot be pressed",
            menuBar({{item(u"Copy"_s, u"C"_s, false)}, {item(u"Copy all"_s)}}), {u"Copy"_s, u"Copy all"_s}},
        {"others",
            menuBar(
                {{item(u"Photocopy"_s), item(u"Cut"_s, u"X"_s), item(u"Cc"_s, u"cc"_s), item(std::nullopt)}}),
            {}},
        {"what asks first", menuBar({{item(u"Copy Input To All Tabs…"_s), item(u"Copy to..."_s)}}), {}},
        {"an empty bar", menuBar({}), {}},
        {"right below the bar is no menu item", {.children = {item(u"Copy"_s)}}, {}},
        {"a menu called so", {.children = {{.children = {item(u"Copy"_s)}}}}, {}},
    };
    for (const auto& [what, bar, pressed] : cases) {
        desktop.accessibility.pressed.clear();
        desktop.accessibility.bar = bar;
        EXPECT_EQ(service.triggerCopyMenuAction(4711), !pressed.isEmpty()) << what;
        EXPECT_EQ(desktop.accessibility.pressed, pressed) << what;
    }
    desktop.accessibility.bar.reset();
    EXPECT_FALSE(service.triggerCopyMenuAction(4711));
    EXPECT_THAT(log.messages(), SizeIs(7));
    EXPECT_EQ(log.messages().value(1),
        u"triggerCopyMenuAction: executed kAXPressAction successfully on 'sao chép liên kết'"_s);
    EXPECT_THAT(desktop.accessibility.asked, testing::Each(4711));
}

TEST(SelectedTextFetch, ends_silently_with_its_service) {
    FakeDesktop desktop;
    desktop.workspace.front = {4711, std::nullopt, std::nullopt};
    auto service = std::make_unique<HotKeyService>(desktop.platform());
    service->fetchSelectedText([](const auto&) { ADD_FAILURE() << "completed after the service was gone"; });
    desktop.clock.advance(220ms);
    service.reset();
    desktop.clock.advance(1s);
}

}  // namespace
}  // namespace tralio
