#pragma once

#include "common/background.h"
#include "history/translation_history_store.h"
#include "support/debug_log_file.h"
#include "ui/program_on_fakes.h"
#include "ui/translate/translate_state.h"

namespace tralio {

/// A panel in the hands of a test, with the input where the main view keeps it. The model answers in
/// capitals.
struct TranslatePanel : testing::Test, protected ProgramOnFakes {
    class Input final : public ObservableObject {
    public:
        Observable<QString> text{*this};
    };

    TranslatePanel() {
        settings.baseURL = model.baseURL();
        answerInCapitals();
        showPanel();
        log.clear();
    }

    void showPanel() {
        hidePanel();
        panel =
            std::make_shared<TranslateState>(TranslateState::Dependencies{ai, captures, ocr, speech, settings,
                                                 history, appState, desktop.pasteboard, desktop.clock},
                Binding<QString>{[this] { return input->text(); },
                    [this](QString text) { input->text = std::move(text); }, input.get()});
        view = std::make_unique<QObject>();
        panel->appear(view.get());
    }
    void hidePanel() {
        view.reset();
        panel.reset();
    }

    void answerInCapitals() {
        model.translatesBy([](const StandInModel::Request& request) { return request.userText().toUpper(); });
    }
    void translate(const QString& text) {
        input->text = text;
        panel->performTranslate();
    }
    /// Starts a translation that gets no answer until the stand-in is told to send it.
    void startHeld(const QString& text) {
        const qsizetype before = model.requests().size();
        model.replies(StandInReply::translation(text.toUpper()).delivered(StandInReply::Delivery::held));
        translate(text);
        ASSERT_TRUE(requestsArrive(before + 1));
        answerInCapitals();
    }
    bool requestsArrive(qsizetype count) {
        return eventually([&] { return model.requests().size() == count; });
    }
    bool translationEnds() {
        return eventually([&] { return !panel->isTranslating(); });
    }
    bool outputBecomes(const QString& text) {
        return eventually([&] { return panel->outputText() == text; });
    }

    /// How many lines of the log have this in them.
    [[nodiscard]] qsizetype logged(const QString& part) const { return log.messages().filter(part).size(); }

    DebugLogFile log;
    TranslationHistoryStore history{store};
    std::unique_ptr<Input> input = std::make_unique<Input>();
    std::unique_ptr<QObject> view;  ///< stands for the widgets
    std::shared_ptr<TranslateState> panel;
};

/// Text that the panel finds elsewhere than under the user's fingers: on the clipboard, in pictures, in
/// files.
struct FoundText : TranslatePanel {
    FoundText() { input->text = QStringLiteral("typed"); }

    static Picture picture() { return std::make_shared<MemoryFile>("not looked at by the panel"); }
    [[nodiscard]] QUrl file(const QString& name, const QByteArray& content) const {
        return QUrl::fromLocalFile(writeFile(folder.filePath(name), content));
    }
    bool recognitionEnds() {
        return eventually([this] { return !panel->isRecognizing(); });
    }
    /// Lets everything happen that a drop may lead to on other threads.
    bool settles() { return eventually(&background::isIdle) && nextTurn() && recognitionEnds(); }

    QTemporaryDir folder;
};

}  // namespace tralio
