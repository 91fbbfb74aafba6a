#include "app/shell_fixture.h"

namespace tralio {
namespace {

class ClipboardCheck : public Shell {
protected:
    ClipboardCheck() { launch(); }

    /// Opens the popover by the tray item; what is requested then, if anything.
    std::optional<QString> opening() {
        popover.shown = false;
        appState.pendingTextToTranslate = QString();
        appState.translateTriggerId = std::nullopt;
        statusItem.action();
        desktop.clock.advance(79ms);
        EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
        desktop.clock.advance(1ms);
        return appState.translateTriggerId() ? std::optional(appState.pendingTextToTranslate())
                                             : std::nullopt;
    }
};

TEST_F(ClipboardCheck, each_new_text_is_translated_once_when_the_tray_item_opens_the_popover) {
    desktop.pasteboard.copy(u" new text\n"_s);
    EXPECT_EQ(opening(), u"new text"_s);
    EXPECT_EQ(opening(), std::nullopt);
    desktop.pasteboard.copy(u"new text"_s);
    EXPECT_EQ(opening(), std::nullopt) << "a clipboard manager has taken it over";
    desktop.pasteboard.setString(u"the result\n"_s);
    EXPECT_EQ(opening(), std::nullopt) << "copied here";
    desktop.pasteboard.copy(u"the result"_s);
    EXPECT_EQ(opening(), std::nullopt);

    desktop.pasteboard.copy(u"first"_s);
    desktop.pasteboard.onRead = [this] {
        desktop.pasteboard.onRead = nullptr;
        desktop.pasteboard.copy(u"made while the one before is read"_s);
    };
    EXPECT_EQ(opening(), u"first"_s);
    EXPECT_EQ(opening(), u"made while the one before is read"_s);

    desktop.pasteboard.copy(u"copied before closing"_s);
    statusItem.action();
    EXPECT_FALSE(popover.shown);
    desktop.clock.advance(80ms);
    EXPECT_EQ(appState.lastHandledChangeCount, desktop.pasteboard.count - 1) << "closing checked";
}

TEST_F(ClipboardCheck, what_is_no_text_or_a_password_or_not_wanted_is_not_sent) {
    for (const std::optional<QString>& content : {std::optional(u" \n"_s), std::optional<QString>()}) {
        desktop.pasteboard.copy(content);
        EXPECT_EQ(opening(), std::nullopt);
    }
    desktop.pasteboard.copy(u"correct horse"_s);
    desktop.pasteboard.concealed = true;
    EXPECT_EQ(opening(), std::nullopt);
    desktop.pasteboard.concealed = false;
    settings.autoPaste = false;
    EXPECT_EQ(opening(), std::nullopt);
    settings.autoPaste = true;
    EXPECT_EQ(opening(), u"correct horse"_s);
}

TEST_F(ClipboardCheck, what_a_hot_key_fetched_over_the_clipboard_is_not_new_but_a_later_copy_is) {
    selectForCopying();
    const auto fetch = [this] {
        popover.shown = false;
        press(textHotKeyID);
        EXPECT_FALSE(popover.shown) << "shown before the text was there";
        desktop.pasteboard.copy(u"copied"_s);
        desktop.clock.advance(30ms);
        EXPECT_TRUE(popover.shown);
    };
    fetch();
    desktop.clock.advance(80ms);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"copied"_s);
    EXPECT_EQ(opening(), std::nullopt);
    desktop.pasteboard.copy(u"copied"_s);
    EXPECT_EQ(opening(), std::nullopt) << "taken over by another program";

    // A selection that touches no clipboard leaves what was handled there as it is.
    desktop.scripts.inFront = u"elsewhere"_s;
    press(textHotKeyID, 80ms);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"elsewhere"_s);
    desktop.scripts.inFront.reset();
    desktop.pasteboard.copy(u"copied"_s);
    EXPECT_EQ(opening(), std::nullopt) << "taken over by another program";

    fetch();
    desktop.pasteboard.copy(u"the user's own"_s);
    desktop.clock.advance(80ms);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"copied"_s);
    EXPECT_EQ(opening(), u"the user's own"_s);

    // Nor is a line that an editor copied because nothing was selected.
    desktop.workspace.front->bundleIdentifier = u"org.kde.kate"_s;
    desktop.pasteboard.selected = u"older"_s;
    press(textHotKeyID);
    desktop.pasteboard.copy(u"line\n"_s);
    desktop.clock.advance(30ms);
    EXPECT_EQ(opening(), std::nullopt);
    desktop.pasteboard.copy(u"line"_s);
    EXPECT_EQ(opening(), std::nullopt) << "taken over by another program";
}

}  // namespace
}  // namespace tralio
