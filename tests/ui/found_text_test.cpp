#include <QMimeData>

#include "common/text_limit.h"
#include "ui/translate_panel_support.h"

namespace tralio {
namespace {

TEST_F(FoundText, pasting_takes_the_trimmed_text_or_else_reads_a_picture_and_translates_it_if_asked) {
    const auto paste = [this](AutoTranslate choice) {
        panel->errorMessage = u"earlier"_s;
        recognizer.isSlow = true;
        panel->pasteFromClipboard(choice);
    };
    paste(AutoTranslate::yes);
    EXPECT_EQ(input->text(), u"typed"_s) << "the clipboard is empty";
    EXPECT_FALSE(panel->isOCROngoing());
    panel->performOCR(Picture(), AutoTranslate::yes);
    ASSERT_TRUE(recognitionEnds());
    EXPECT_EQ(panel->errorMessage(), OCRError::invalidImage().errorDescription());
    EXPECT_EQ(input->text(), u"typed"_s);

    desktop.pasteboard.copy(u" \n pasted\u3000"_s);
    desktop.pasteboard.shown = picture();
    paste(AutoTranslate::yes);
    EXPECT_EQ(input->text(), u"pasted"_s);
    EXPECT_TRUE(panel->isTranslating());
    EXPECT_THAT(recognizer.images, SizeIs(0)) << "text comes before pictures";
    ASSERT_TRUE(translationEnds());

    pictureSays(u" in the picture "_s);
    desktop.pasteboard.copy(u" \n"_s);
    desktop.pasteboard.shown = picture();
    for (const AutoTranslate choice : {AutoTranslate::no, AutoTranslate::yes}) {
        paste(choice);
        EXPECT_TRUE(panel->isOCROngoing());
        EXPECT_EQ(panel->errorMessage(), std::nullopt);
        ASSERT_TRUE(recognitionEnds());
        EXPECT_EQ(input->text(), u"in the picture"_s);
        EXPECT_EQ(panel->isTranslating(), choice == AutoTranslate::yes);
    }
}

TEST_F(FoundText, a_text_that_is_too_long_is_refused_with_words_whatever_way_it_comes) {
    const QString longest(longestText, u'a');
    const QString tooLong = longest + u"bc"_s;
    pictureSays(tooLong);
    using enum TextOrigin;
    desktop.pasteboard.copy(tooLong);
    desktop.pasteboard.selected = tooLong;
    QMimeData dragged;
    dragged.setText(tooLong);
    const auto drop = [this](const QString& name, const QByteArray& content) {
        panel->handleDrop({{.fileURL = file(name, content)}});
    };
    const QString told = u"Văn bản quá dài (200.002 ký tự, tối đa 200.000)"_s;
    const std::pair<QString, std::function<void()>> ways[] = {
        {told, [&] { panel->pasteFromClipboard(AutoTranslate::yes); }},
        {told, [&] { EXPECT_EQ(panel->textToInsert(dragged, clipboard, {}), std::nullopt); }},
        {told, [&] { EXPECT_EQ(panel->textToInsert(dragged, selection, {}), std::nullopt); }},
        {told, [&] { EXPECT_EQ(panel->textToInsert(dragged, drag, {}), std::nullopt); }},
        {told, [&] { appState.requestTranslation(tooLong); }}, {told, [&] { drop(u"a.png"_s, {}); }},
        {told, [&] { drop(u"a.txt"_s, tooLong.toUtf8()); }},
        {u"Văn bản quá dài (hơn 200.000 ký tự, tối đa 200.000)"_s,
            [&] { drop(u"b.txt"_s, QByteArray(longestTextBytes + 10, 'a')); }}};
    for (const auto& [message, come] : ways) {
        panel->errorMessage = std::nullopt;
        come();
        ASSERT_TRUE(settles());
        EXPECT_EQ(panel->errorMessage(), message) << &come - &ways[0].second;
        EXPECT_EQ(input->text(), u"typed"_s);
        EXPECT_FALSE(panel->isTranslating());
    }
    // As does what has grown under the user's fingers.
    dragged.setText(longest);
    EXPECT_EQ(panel->textToInsert(dragged, drag, u"typed"_s), std::nullopt) << "with what stays there";
    EXPECT_EQ(panel->textToInsert(dragged, drag, {}), longest) << "in the place of it all";
    translate(tooLong);
    EXPECT_EQ(panel->errorMessage(), told);
    translate(u"𠮷"_s.repeated(longestText));
    ASSERT_TRUE(translationEnds());
    EXPECT_EQ(panel->errorMessage(), std::nullopt);
    EXPECT_EQ(panel->outputText(), input->text());
}

TEST_F(FoundText, a_picture_whose_owner_needs_time_shows_as_on_its_way_and_gives_way_to_later_ones) {
    desktop.pasteboard.shown = picture();
    for (const auto& meanwhile : std::initializer_list<std::function<void()>>{
             [this] { panel->handleDrop({{.fileURL = file(u"later.png"_s, {})}}); },
             [this] { panel->cancel(); },
             [this] {  // an entry of the history
                 hidePanel();
                 appState.offerTranslation(u"picked"_s);
                 showPanel();
             },
             [] {}}) {
        desktop.pasteboard.owner = std::make_shared<QPromise<void>>();
        desktop.pasteboard.owner->start();
        panel->pasteFromClipboard(AutoTranslate::no);
        EXPECT_TRUE(panel->isRecognizing() && panel->canEndRecognition());
        meanwhile();
        desktop.pasteboard.owner->finish();
        ASSERT_TRUE(recognitionEnds());
    }
    EXPECT_THAT(recognizer.images, SizeIs(2)) << "what was dropped, and what nothing came between";
}

TEST_F(
    FoundText, a_region_of_the_screen_that_says_nothing_is_told_and_one_that_is_not_drawn_changes_nothing) {
    QStringList steps;
    appState.onHidePopover = [&] { steps << u"hide"_s; };
    appState.onShowPopover = [&] { steps << u"show"_s; };
    const auto capture = [&] {
        steps.clear();
        panel->errorMessage = u"earlier"_s;
        panel->captureScreenAndTranslate();
        EXPECT_TRUE(panel->isOCROngoing());
        EXPECT_EQ(panel->errorMessage(), std::nullopt);
        desktop.clock.advance(150ms);
        ASSERT_TRUE(recognitionEnds());
        EXPECT_THAT(steps, ElementsAre(u"hide"_s, u"show"_s));
    };
    region.draws = false;
    capture();
    EXPECT_EQ(panel->errorMessage(), std::nullopt);
    region.draws = true;
    capture();
    EXPECT_EQ(panel->errorMessage(), OCRError::noTextFound().errorDescription());
    EXPECT_EQ(input->text(), u"typed"_s);
}

TEST_F(FoundText, a_reading_that_is_cancelled_or_overtaken_changes_nothing_and_what_came_last_counts) {
    recognizer.isSlow = true;
    pictureSays(u"late"_s);
    panel->performOCR(picture(), AutoTranslate::yes);
    recognizer.counts.back()(40);
    EXPECT_EQ(panel->linesRead(), 40);
    panel->cancel();
    EXPECT_TRUE(recognizer.stops.back().stop_requested());
    ASSERT_TRUE(recognitionEnds());
    EXPECT_EQ(input->text(), u"typed"_s);
    EXPECT_EQ(panel->errorMessage(), std::nullopt);

    // A failure of the first, once it is stopped, is nothing to tell either.
    recognizer.answer = [answers = 0]() mutable -> std::vector<TextObservation> {
        if (++answers == 1)
            throw LocalizedError(u"stopped"_s);
        return {{.boundingBox = {0.1, 0.5, 0.5, 0.1}, .candidates = {u"new"_s}}};
    };
    panel->performOCR(picture(), AutoTranslate::no);
    const LinesRead countOfFirst = recognizer.counts.back();
    panel->performOCR(picture(), AutoTranslate::no);
    EXPECT_TRUE(recognizer.stops[1].stop_requested()) << "nobody waits for it any more";
    EXPECT_FALSE(recognizer.stops[2].stop_requested());
    EXPECT_EQ(panel->linesRead(), 0);
    countOfFirst(7);
    EXPECT_EQ(panel->linesRead(), 0);
    EXPECT_TRUE(panel->isOCROngoing());
    ASSERT_TRUE(recognitionEnds());
    EXPECT_EQ(input->text(), u"new"_s);
    EXPECT_EQ(panel->errorMessage(), std::nullopt);

    // A region that was drawn overtakes what was dropped, and one whose drawing was cancelled not.
    const auto held = recognizer.hold = std::make_shared<QPromise<void>>();
    held->start();
    panel->performOCR(picture(), AutoTranslate::no);
    recognizer.hold.reset();
    for (const bool draws : {false, true}) {
        region.draws = draws;
        panel->captureScreenAndTranslate();
        EXPECT_FALSE(recognizer.stops[3].stop_requested());
        desktop.clock.advance(150ms);
        ASSERT_TRUE(eventually([this] { return !captures.isDrawing(); }));
        ASSERT_TRUE(nextTurn());
        EXPECT_EQ(recognizer.stops[3].stop_requested(), draws);
    }
    held->finish();
    ASSERT_TRUE(recognitionEnds());

    // So does a text, and a picture overtakes a file that is not read yet.
    desktop.pasteboard.copy(u"pasted"_s);
    const auto paste = [this] { panel->pasteFromClipboard(AutoTranslate::no); };
    const auto insert = [this] { (void)panel->textToInsert(QMimeData(), TextOrigin::clipboard, {}); };
    for (const auto& come : std::initializer_list<std::function<void()>>{paste, insert}) {
        panel->performOCR(picture(), AutoTranslate::no);
        come();
        EXPECT_TRUE(recognizer.stops.back().stop_requested());
        ASSERT_TRUE(recognitionEnds());
        EXPECT_NE(input->text(), u"new"_s);
    }
    panel->handleDrop({{.fileURL = file(u"a.txt"_s, "dropped")}});
    panel->performOCR(picture(), AutoTranslate::no);
    ASSERT_TRUE(settles());
    EXPECT_EQ(input->text(), u"new"_s);
}

TEST_F(FoundText, that_is_read_for_a_panel_that_was_left_can_be_ended_and_is_told_where_the_user_is) {
    pictureSays(u"seen"_s);
    recognizer.isSlow = true;
    const auto leaveWhileReading = [this] {
        showPanel();
        panel->performOCR(picture(), AutoTranslate::yes);
        recognizer.counts.back()(40);
        hidePanel();
    };
    leaveWhileReading();
    showPanel();
    EXPECT_TRUE(panel->isRecognizing());
    EXPECT_EQ(panel->linesRead(), 40);
    ASSERT_TRUE(eventually([this] { return input->text() == u"seen"; }));
    EXPECT_FALSE(panel->isRecognizing());
    EXPECT_EQ(panel->linesRead(), 0) << "the next picture has none yet";
    desktop.clock.advance(50ms);
    ASSERT_TRUE(outputBecomes(u"SEEN"_s));

    // Another tab is there when it ends.
    leaveWhileReading();
    ASSERT_TRUE(eventually([&] { return logged(u"result='SEEN'"_s) == 2; }));
    pictureSays({});
    leaveWhileReading();
    ASSERT_TRUE(eventually([&] { return !appState.isReading(); }));
    showPanel();
    EXPECT_EQ(panel->errorMessage(), OCRError::noTextFound().errorDescription());

    recognizer.answer = []() -> std::vector<TextObservation> { throw OCRError::invalidImage(); };
    const auto held = recognizer.hold = std::make_shared<QPromise<void>>();
    held->start();
    panel->errorMessage = u"earlier"_s;
    panel->handleDrop({{.fileURL = file(u"broken.png"_s, "no picture")}});
    ASSERT_TRUE(eventually([&] { return appState.isReading(); }));
    hidePanel();
    showPanel();
    panel->errorMessage = u"newer"_s;
    held->finish();
    recognizer.hold.reset();
    ASSERT_TRUE(eventually([&] { return !appState.isReading(); }) && nextTurn());
    EXPECT_EQ(panel->errorMessage(), u"newer"_s);

    pictureSays(u"late"_s);
    leaveWhileReading();
    showPanel();
    panel->cancel();
    EXPECT_FALSE(panel->isRecognizing());
    EXPECT_TRUE(recognizer.stops.back().stop_requested());
}

TEST_F(FoundText, that_may_not_be_translated_is_told_although_its_panel_was_left) {
    recognizer.isSlow = true;
    const auto expectTold = [this](const QString& words, const DroppedItem& dropped) {
        auto dropsInto = panel;
        hidePanel();  // before the drop, which may come as fast
        dropsInto->handleDrop({dropped});
        const std::weak_ptr<TranslateState> left = std::exchange(dropsInto, nullptr);
        ASSERT_TRUE(eventually([&] { return left.expired(); })) << "what was dropped has not come";
        showPanel();
        EXPECT_TRUE(panel->errorMessage().value_or(QString()).contains(words)) << qPrintable(words);
    };
    const QString tooLong(longestText + 1, u'a');
    expectTold(u"quá dài"_s, {.fileURL = file(u"a.txt"_s, tooLong.toUtf8())});
    pictureSays(tooLong);
    expectTold(u"quá dài"_s, {.picture = picture()});
    pictureSays(u"text"_s);
    appState.isKeyAwaited = true;
    expectTold(u"keyring"_s, {.picture = picture()});
    appState.isKeyAwaited = false;
    settings.apiKey = u"mine"_s;
    settings.baseURL = u"http://ai.example.com"_s;
    expectTold(u"không mã hóa (http)"_s, {.picture = picture()});
    EXPECT_TRUE(model.requests().isEmpty());
}

}  // namespace
}  // namespace tralio
