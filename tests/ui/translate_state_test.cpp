#include "ui/translate/translate_state.h"

#include <QTcpServer>

#include "common/text_limit.h"
#include "engine/chat_completions.h"
#include "ui/translate_panel_support.h"

namespace tralio {
namespace {

const QString vietnamese = u"Tiếng Việt"_s;
const QString japanese = u"Tiếng Nhật"_s;
const QString korean = u"Tiếng Hàn"_s;

TEST_F(TranslatePanel, a_translation_sends_the_choices_of_its_start_and_is_kept_with_those_of_its_end) {
    panel->sourceLang = japanese;
    panel->targetLang = korean;
    settings.tone = TranslationTone::formal;
    translate(u" \n\u3000hello \t"_s);
    EXPECT_TRUE(panel->isTranslating());
    EXPECT_FALSE(panel->canTranslate());
    panel->sourceLang = vietnamese;
    panel->targetLang = japanese;
    settings.tone = TranslationTone::concise;

    ASSERT_TRUE(translationEnds());
    EXPECT_TRUE(panel->canTranslate());
    EXPECT_EQ(input->text(), u" \n\u3000hello \t"_s);
    ASSERT_EQ(model.requests().size(), 1);
    EXPECT_EQ(model.requests().last().systemPrompt(),
        chat_completions::systemPrompt(settings.customPrompt(), japanese, korean, TranslationTone::formal));
    const TranslationItem& kept = history.items().last();
    EXPECT_THAT(
        (QStringList{kept.sourceText, kept.translatedText, kept.sourceLang, kept.targetLang, kept.tone}),
        ElementsAre(u"hello"_s, u"HELLO"_s, vietnamese, japanese, TranslationTone::concise.rawValue()));
}

TEST_F(TranslatePanel, the_log_shows_thirty_characters_of_text_and_result_and_a_blank_input_changes_nothing) {
    panel->errorMessage = u"still to be read"_s;
    for (const QString& blank : {u""_s, u" \n\u00a0\t"_s}) {
        translate(blank);
        EXPECT_FALSE(panel->canTranslate());
        EXPECT_FALSE(panel->isTranslating());
    }
    EXPECT_EQ(panel->errorMessage(), u"still to be read"_s);
    const QString family = u"👨‍👩‍👧‍👦"_s;
    model.translatesTo(u"ế"_s.repeated(31));
    translate(u"  "_s + family.repeated(31));
    ASSERT_TRUE(translationEnds());
    const QString start = u"TranslateView.performTranslate: starting translation for '%1'"_s;
    EXPECT_THAT(log.messages(),
        ElementsAre(start.arg(QString()), start.arg(QString()), start.arg(family.repeated(30)),
            u"TranslateView.performTranslate: SUCCESS, result='%1'"_s.arg(u"ế"_s.repeated(30))));
}

TEST_F(TranslatePanel, a_result_is_stale_while_a_later_request_is_under_way_and_not_for_its_line_breaks) {
    startHeld(u"one\r\ntwo"_s);
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    settings.baseURL = u"http://127.0.0.1:%1/v1"_s.arg(silent.serverPort());
    panel->performTranslate();
    model.sendTheRest();
    ASSERT_TRUE(outputBecomes(u"ONE\r\nTWO"_s));
    EXPECT_TRUE(panel->isResultStale());

    settings.baseURL = model.baseURL();
    startHeld(u"one\r\ntwo"_s);
    startHeld(u"one\r\ntwo"_s);
    panel->cancel();
    EXPECT_TRUE(panel->isResultStale());
    model.sendTheRest();
    EXPECT_TRUE(eventually([&] { return !panel->isResultStale(); })) << "of the request before the last";

    for (const QString& edited : {u"one\ntwo"_s, u"one\u2029two"_s}) {
        input->text = edited;
        EXPECT_FALSE(panel->isResultStale()) << "as an editor gives it back";
    }
    input->text = u"one two"_s;
    EXPECT_TRUE(panel->isResultStale());
}

TEST_F(TranslatePanel, cancelling_gives_up_only_what_was_started_last_and_a_late_answer_changes_nothing) {
    panel->cancel();  // nothing has been started yet
    EXPECT_FALSE(panel->isTranslating());
    startHeld(u"first"_s);
    startHeld(u"late"_s);
    panel->cancel();
    panel->cancel();
    EXPECT_FALSE(panel->isTranslating());
    model.sendTheRest();
    ASSERT_TRUE(outputBecomes(u"FIRST"_s));

    // The cancelled translation ends while the next one waits for its answer.
    startHeld(u"next"_s);
    ASSERT_TRUE(eventually([&] { return model.openConnections() == 1; })) << "the cancelled request goes on";
    ASSERT_TRUE(nextTurn());
    EXPECT_TRUE(panel->isTranslating());
    EXPECT_EQ(panel->errorMessage(), std::nullopt);
    EXPECT_EQ(panel->outputText(), u"FIRST"_s);
    model.sendTheRest();
    ASSERT_TRUE(outputBecomes(u"NEXT"_s));
    EXPECT_EQ(logged(u"result='LATE'"_s), 0);
}

TEST_F(TranslatePanel, answers_that_come_after_the_panel_was_left_are_recorded_and_shown_nowhere) {
    startHeld(u"good"_s);
    model.replies(StandInReply::error(500, u"bad"_s).delivered(StandInReply::Delivery::held));
    translate(u"bad"_s);
    ASSERT_TRUE(requestsArrive(2));

    showPanel();
    EXPECT_FALSE(panel->isTranslating());
    model.sendTheRest();
    ASSERT_TRUE(eventually([&] { return logged(u"result='GOOD'"_s) == 1 && logged(u"FAILED"_s) == 1; }));
    ASSERT_TRUE(nextTurn());
    EXPECT_EQ(panel->outputText(), QString());
    EXPECT_EQ(panel->errorMessage(), std::nullopt);
    EXPECT_EQ(input->text(), u"bad"_s);
    EXPECT_EQ(history.items().size(), 1);

    startHeld(u"late"_s);
    hidePanel();
    input.reset();
    model.sendTheRest();
    ASSERT_TRUE(eventually([&] { return logged(u"result='LATE'"_s) == 1; }));
    EXPECT_EQ(history.items().size(), 1) << "not even recorded at the end of the program";
}

TEST_F(TranslatePanel, a_translation_over_the_limit_of_texts_is_refused_in_words_and_not_kept) {
    model.translatesBy([](const StandInModel::Request&) { return u"𠮷"_s.repeated(longestText + 1); });
    translate(u"text"_s);
    ASSERT_TRUE(translationEnds());
    EXPECT_TRUE(panel->outputText().isEmpty());
    EXPECT_TRUE(panel->errorMessage() && panel->errorMessage()->contains(u"tối đa 200.000"_s));
    EXPECT_TRUE(history.items().isEmpty());
}

TEST_F(TranslatePanel, swapping_exchanges_the_languages_and_with_a_result_the_texts_too) {
    const QString detect = u"Tự động phát hiện"_s;
    // The languages and the texts, sources first.
    using Panel = std::array<QString, 4>;
    const std::pair<Panel, Panel> cases[] = {
        {{korean, japanese, u""_s, u"out"_s}, {japanese, korean, u"out"_s, u""_s}},
        {{detect, japanese, u"in"_s, u"out"_s}, {japanese, vietnamese, u"out"_s, u"in"_s}},
        {{detect, vietnamese, u"in"_s, u""_s}, {vietnamese, vietnamese, u"in"_s, u""_s}},
    };
    for (const auto& [before, after] : cases) {
        panel->sourceLang = before[0];
        panel->targetLang = before[1];
        input->text = before[2];
        panel->outputText = before[3];
        panel->swapLanguages();
        EXPECT_EQ(
            Panel({panel->sourceLang(), panel->targetLang(), input->text(), panel->outputText()}), after);
    }
    EXPECT_THAT(log.messages(), IsEmpty()) << "swapping translates nothing";
}

struct PendingText : TranslatePanel {
    /// A text comes for the panel, whose turn it is then, and the time after it.
    void request(const QString& text, std::chrono::milliseconds time = {}) {
        appState.requestTranslation(text);
        ASSERT_TRUE(nextTurn());
        desktop.clock.advance(time);
    }
    void openPopover(std::chrono::milliseconds time = {}) {
        appState.notifyPopoverOpened();
        ASSERT_TRUE(nextTurn());
        desktop.clock.advance(time);
    }
};

TEST_F(PendingText, a_requested_text_is_taken_over_at_once_and_translated_fifty_milliseconds_later) {
    const QString picked = u"picked in a window, of whose text the log has thirty characters"_s;
    for (qsizetype round = 1; round <= 2; ++round) {  // the same text again is another request
        input->text = u"typed"_s;
        appState.requestTranslation(u"\u3000 \u00a0\t"_s + picked + u"\u2029 \n"_s);
        EXPECT_EQ(input->text(), u"typed"_s) << "taken over before the observers' turn";
        ASSERT_TRUE(nextTurn());
        EXPECT_EQ(input->text(), picked);
        EXPECT_EQ(appState.pendingTextToTranslate(), QString());
        EXPECT_EQ(logged(u"pendingText='picked in a window, of whose t'"_s), round);
        EXPECT_EQ(
            logged(u"AppState.requestTranslation: requested with text 'picked in a window, of whose t'"_s),
            round);
        desktop.clock.advance(49ms);
        EXPECT_FALSE(panel->isTranslating());
        desktop.clock.advance(1ms);
        EXPECT_TRUE(panel->isTranslating());
        ASSERT_TRUE(translationEnds());
        EXPECT_EQ(model.requests().size(), round);
    }
    EXPECT_EQ(panel->outputText(), picked.toUpper());
}

TEST_F(PendingText, each_opening_of_the_popover_checks_fifty_milliseconds_later) {
    input->text = u"typed"_s;
    const QString blank = u"\u3000 "_s.repeated(20);
    appState.pendingTextToTranslate = blank;
    openPopover(1s);
    EXPECT_THAT(log.messages(),
        ElementsAre(
            u"TranslateView.checkAndTriggerPendingTranslation: pendingText='%1'"_s.arg(blank.left(30))));
    EXPECT_EQ(input->text(), u"typed"_s);
    for (const QString& text : {u" one "_s, u" two "_s}) {
        appState.pendingTextToTranslate = text;
        ASSERT_TRUE(nextTurn());
        EXPECT_EQ(desktop.clock.pending(), 0) << "a pending text is no trigger";
        openPopover(49ms);
        EXPECT_EQ(logged(text), 0);
        desktop.clock.advance(1ms);
        EXPECT_EQ(input->text(), text.trimmed());
        desktop.clock.advance(50ms);
        EXPECT_TRUE(panel->isTranslating());
        ASSERT_TRUE(translationEnds());
    }
}

TEST_F(PendingText, that_comes_between_two_openings_is_translated_once_although_the_panel_is_shown_anew) {
    openPopover(30ms);
    request(u"picked"_s);
    showPanel();
    openPopover(1s);
    ASSERT_TRUE(eventually([&] { return history.items().size() == 1; }));
    EXPECT_EQ(model.requests().size(), 1);
}

TEST_F(PendingText, what_is_offered_is_put_into_the_input_and_not_sent) {
    appState.offerTranslation(u" maybe old\n"_s);
    ASSERT_TRUE(nextTurn());
    desktop.clock.advance(1s);
    EXPECT_EQ(input->text(), u"maybe old"_s);
    EXPECT_FALSE(panel->isTranslating());
    EXPECT_EQ(logged(u"maybe"_s), 0) << "it may be a password";
    request(u"wanted"_s, 1s);
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
    openPopover(1s);
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
    request(u"again"_s, 1s);
    EXPECT_TRUE(requestsArrive(requests + 1));
}

TEST_F(PendingText, a_key_that_is_not_there_yet_or_that_others_would_see_is_not_sent) {
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

    appState.isKeyAwaited = false;
    settings.apiKey = u"mine"_s;
    settings.baseURL = u"http://ai.example.com"_s;
    request(u"private"_s, 1s);
    EXPECT_FALSE(panel->isTranslating());
    EXPECT_TRUE(panel->errorMessage().value_or(QString()).contains(u"không mã hóa (http)"_s));
}

}  // namespace
}  // namespace tralio
