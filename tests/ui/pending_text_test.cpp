#include "ui/translate_panel_support.h"

namespace tralio {
namespace {

class PendingText : public TranslatePanel {
protected:
    /// A text comes for the panel, whose turn it is then.
    void request(const QString& text) {
        appState.requestTranslation(text);
        ASSERT_TRUE(nextTurn());
    }
    void openPopover() {
        appState.notifyPopoverOpened();
        ASSERT_TRUE(nextTurn());
    }
};

TEST_F(PendingText, a_requested_text_is_taken_over_at_once_and_translated_fifty_milliseconds_later) {
    for (qsizetype round = 1; round <= 2; ++round) {  // the same text again is another request
        input->text = u"typed"_s;
        appState.requestTranslation(u"\u3000 \u00a0\tpicked\u2029 \n"_s);
        EXPECT_EQ(input->text(), u"typed"_s) << "taken over before the observers' turn";
        ASSERT_TRUE(nextTurn());
        EXPECT_EQ(input->text(), u"picked"_s);
        EXPECT_EQ(appState.pendingTextToTranslate(), QString());
        EXPECT_EQ(logged(pendingLine(u"picked"_s)), round);
        EXPECT_EQ(logged(u"AppState.requestTranslation: requested with text 'picked'"_s), round);
        desktop.clock.advance(49ms);
        EXPECT_FALSE(panel->isTranslating());
        desktop.clock.advance(1ms);
        EXPECT_TRUE(panel->isTranslating());
        ASSERT_TRUE(translationEnds());
        EXPECT_EQ(model.requests().size(), round);
    }
    EXPECT_EQ(panel->outputText(), u"PICKED"_s);
}

TEST_F(PendingText, each_opening_of_the_popover_checks_fifty_milliseconds_later) {
    input->text = u"typed"_s;
    const QString blank = u"\u3000 "_s.repeated(20);
    appState.pendingTextToTranslate = blank;
    openPopover();
    desktop.clock.advance(1s);
    EXPECT_THAT(log.messages(), ElementsAre(pendingLine(blank.left(30))));
    EXPECT_EQ(input->text(), u"typed"_s);
    for (const QString& text : {u" one "_s, u" two "_s}) {
        appState.pendingTextToTranslate = text;
        ASSERT_TRUE(nextTurn());
        EXPECT_EQ(desktop.clock.pending(), 0) << "a pending text is no trigger";
        openPopover();
        desktop.clock.advance(49ms);
        EXPECT_EQ(logged(pendingLine(text)), 0);
        desktop.clock.advance(1ms);
        EXPECT_EQ(input->text(), text.trimmed());
        desktop.clock.advance(50ms);
        EXPECT_TRUE(panel->isTranslating());
        ASSERT_TRUE(translationEnds());
    }
}

TEST_F(PendingText,
    a_request_between_two_openings_is_translated_once_although_the_panel_is_left_and_shown_again) {
    openPopover();
    desktop.clock.advance(30ms);
    request(u"picked"_s);
    showPanel();
    openPopover();
    desktop.clock.advance(1s);
    ASSERT_TRUE(eventually([&] { return history.items().size() == 1; }));
    EXPECT_EQ(model.requests().size(), 1);
}

TEST_F(PendingText, what_is_offered_is_put_into_the_input_and_not_sent) {
    appState.offerTranslation(u" maybe old\n"_s);
    ASSERT_TRUE(nextTurn());
    desktop.clock.advance(1s);
    EXPECT_EQ(input->text(), u"maybe old"_s);
    EXPECT_FALSE(panel->isTranslating());
    request(u"wanted"_s);
    desktop.clock.advance(1s);
    EXPECT_TRUE(panel->isTranslating());
}

TEST_F(PendingText, nothing_is_sent_unasked_while_the_settings_may_not_be_the_users) {
    bool dismissed = false;
    appState.onStoreTroubleDismissed = [&] { dismissed = true; };
    for (const auto& [trouble, told] : {std::pair(StoreTrouble::unsaved, u"sẽ mất khi thoát"_s),
             std::pair(StoreTrouble::unreadable, u"cài đặt mặc định"_s)}) {
        appState.storeTrouble = trouble;
        ASSERT_TRUE(panel->message() && panel->message()->contains(told)) << qPrintable(told);
    }
    const auto warning = panel->message();
    request(u"private"_s);
    openPopover();
    desktop.clock.advance(1s);
    EXPECT_EQ(input->text(), u"private"_s);
    EXPECT_FALSE(panel->isTranslating());

    // What the user asks for is done, with the warning still there, and the error beside it.
    model.repliesBy([](const StandInModel::Request&) { return StandInReply::error(500, u"broken"_s); });
    panel->performTranslate();
    ASSERT_TRUE(translationEnds());
    EXPECT_EQ(panel->message(), *warning + u'\n' + panel->errorMessage().value_or(QString()));
    panel->clear();
    EXPECT_EQ(panel->message(), warning);

    panel->dismissError();
    EXPECT_TRUE(dismissed);
    EXPECT_EQ(panel->message(), std::nullopt);
    const qsizetype requests = model.requests().size();
    request(u"again"_s);
    desktop.clock.advance(1s);
    EXPECT_TRUE(requestsArrive(requests + 1));
}

TEST_F(PendingText, a_key_that_is_not_there_yet_is_not_sent) {
    int asked = 0;
    appState.onUnlockKey = [&] { ++asked; };
    appState.isKeyAwaited = true;
    translate(u"text"_s);
    EXPECT_FALSE(panel->isTranslating());
    EXPECT_TRUE(panel->errorMessage());
    EXPECT_EQ(asked, 1) << "the user is there";
    settings.selectedPresetId = u"ollama"_s;
    panel->performTranslate();
    EXPECT_TRUE(panel->isTranslating()) << "a server that wants no key";
    ASSERT_TRUE(translationEnds());
    EXPECT_EQ(panel->errorMessage(), std::nullopt);
}

}  // namespace
}  // namespace tralio
