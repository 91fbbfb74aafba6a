#include "support/debug_log_file.h"
#include "support/fake_desktop.h"

namespace tralio {
namespace {

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

class MenuCopy : public testing::Test {
protected:
    DebugLogFile log;
    FakeDesktop desktop;
    HotKeyService service{desktop.platform()};
};

TEST_F(MenuCopy, presses_the_first_item_that_means_copy_whatever_its_menu) {
    struct Case {
        const char* what;
        FakeElement bar;
        QString pressed;
    };
    const Case cases[] = {
        {"by title", menuBar({{item(u"Cut"_s)}, {item(u"Paste"_s), item(u"Copy"_s)}}), u"Copy"_s},
        {"by title in Vietnamese", menuBar({{item(u"SAO CHÉP liên kết"_s)}}), u"SAO CHÉP liên kết"_s},
        {"by key", menuBar({{item(u"Chép"_s, u"c"_s)}}), u"Chép"_s},
        {"a title that only begins so comes first", menuBar({{item(u"Copy Link"_s)}, {item(u"Copy"_s)}}),
            u"Copy Link"_s},
        {"an item without a title", menuBar({{item(std::nullopt, u"C"_s)}}), u""_s},
        {"past menus without items", menuBar({{}, {item(u"copy"_s)}}), u"copy"_s},
    };
    for (const Case& one : cases) {
        desktop.accessibility.pressed.clear();
        desktop.accessibility.bar = one.bar;
        EXPECT_TRUE(service.triggerCopyMenuAction(4711)) << one.what;
        EXPECT_THAT(desktop.accessibility.pressed, ElementsAre(one.pressed)) << one.what;
    }
    desktop.accessibility.pressed.clear();
    desktop.accessibility.bar = menuBar({{item(u"Copy"_s, u"C"_s, false)}, {item(u"Copy all"_s)}});
    EXPECT_TRUE(service.triggerCopyMenuAction(4711));
    EXPECT_THAT(desktop.accessibility.pressed, ElementsAre(u"Copy"_s, u"Copy all"_s))
        << "it goes on when an item cannot be pressed";

    EXPECT_EQ(log.messages().value(1),
        u"triggerCopyMenuAction: executed kAXPressAction successfully on 'sao chép liên kết'"_s);
    EXPECT_THAT(desktop.accessibility.asked, testing::Each(4711));
}

TEST_F(MenuCopy, leaves_other_items_alone) {
    for (const FakeElement& bar : {
             menuBar({{item(u"Photocopy"_s), item(u"Cut"_s, u"X"_s), item(u"Cc"_s, u"cc"_s),
                 item(std::nullopt)}}),
             menuBar({}), FakeElement{.children = {item(u"Copy"_s)}},     // right below the bar: no menu item
             FakeElement{.children = {{.children = {item(u"Copy"_s)}}}},  // a menu called so
         }) {
        desktop.accessibility.bar = bar;
        EXPECT_FALSE(service.triggerCopyMenuAction(1));
    }
    desktop.accessibility.bar.reset();
    EXPECT_FALSE(service.triggerCopyMenuAction(1));
    EXPECT_THAT(desktop.accessibility.pressed, IsEmpty());
    EXPECT_THAT(log.messages(), IsEmpty());
}

}  // namespace
}  // namespace tralio
