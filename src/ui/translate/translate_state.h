#pragma once

#include <QPointer>
#include <QStringList>
#include <QUrl>
#include <qcorotask.h>

#include <memory>
#include <optional>
#include <stop_token>

#include "common/binding.h"
#include "common/clock.h"
#include "common/observable_object.h"
#include "ocr/text_recognizer.h"
#include "ui/kit/foreign_content.h"
#include "ui/translate/dropped_item.h"

namespace tralio {

class AIService;
class AppSettings;
class AppState;
class OCRService;
class Pasteboard;
class ScreenCaptureService;
class SpeechService;
class TranslationHistoryStore;

/// Whether a text found elsewhere is translated at once.
enum class AutoTranslate { no, yes };

/// The state of the translate panel: what it shows, and what happens when the user acts or the shell requests
/// a translation. Main thread only. Implemented in translate_state.cpp and found_text.cpp.
///
/// Made anew whenever the panel is shown; the input text belongs to the main view and survives. Tasks that it
/// has started keep it alive: a translation that ends after its panel was left is still added to the history.
class TranslateState final : public ObservableObject, public std::enable_shared_from_this<TranslateState> {
    Q_OBJECT

public:
    /// What the panel uses. All of it outlives the panel and, except for `settings` and `history`, the tasks
    /// that the panel starts. Those two are destroyed together.
    struct Dependencies {
        AIService& ai;
        ScreenCaptureService& captures;
        OCRService& ocr;
        SpeechService& speech;
        AppSettings& settings;
        TranslationHistoryStore& history;
        AppState& appState;
        Pasteboard& pasteboard;
        Clock& clock;
    };

    /// The languages offered, by the names that are sent to the model.
    [[nodiscard]] static const QStringList& languages();
    [[nodiscard]] static QStringList targetLanguages();

    TranslateState(Dependencies needs, Binding<QString> inputText);

    /// Takes over texts that the shell leaves for this panel, from now until `panel` is destroyed.
    void appear(QObject* panel);

    // State

    Binding<QString> inputText;
    Observable<QString> outputText{*this};
    Observable<QString> sourceLang;
    Observable<QString> targetLang;
    Observable<bool> isTranslating{*this, false};
    Observable<bool> isOCROngoing{*this, false};
    Observable<bool> isDropTargeted{*this, false};
    Observable<std::optional<QString>> errorMessage{*this};
    /// How often an error has been shown or removed: the same one may come twice.
    [[nodiscard]] qint64 errorCount() const { return m_errors; }
    Observable<bool> isCopied{*this, false};

    /// The text of the error strip: the trouble with the settings, until the user dismisses it, and the
    /// error.
    [[nodiscard]] std::optional<QString> message() const;
    [[nodiscard]] AppSettings& settings() { return m_needs.settings; }
    [[nodiscard]] SpeechService& speechService() { return m_needs.speech; }
    [[nodiscard]] AppState& appState() { return m_needs.appState; }
    [[nodiscard]] bool canTranslate() const;
    /// Whether a picture is awaited or recognised, for this panel, a former one, or the shell.
    [[nodiscard]] bool isRecognizing() const;
    /// Whether `cancel` ends that, or the wait for a text file: not while the user still draws.
    [[nodiscard]] bool canEndRecognition() const;
    /// The number of lines read of that picture.
    [[nodiscard]] qsizetype linesRead() const;
    /// A message that temporarily replaces the character count; empty otherwise.
    [[nodiscard]] QString notice() const;
    /// Whether the result belongs to another input, or a newer result is awaited.
    [[nodiscard]] bool isResultStale() const;

    // Actions

    /// Translates the input. A running translation is not cancelled; results are shown in the order in which
    /// they arrive.
    void performTranslate();
    /// Cancels the recognition under way, what is awaited, and the translation started last, without a
    /// message.
    void cancel();
    void swapLanguages();
    /// Takes over a text that the shell has left for this panel. It is not translated while the settings may
    /// not be the user's.
    void checkAndTriggerPendingTranslation();
    /// Takes the clipboard's text, or else the text in its picture.
    void pasteFromClipboard(AutoTranslate autoTranslate);
    /// What to insert of a text that is dropped on the input, or pasted by key or middle button: nothing,
    /// with an error message, if the input would become too long. `kept` is the part of the input that stays.
    [[nodiscard]] std::optional<QString> textToInsert(
        const QMimeData& source, TextOrigin origin, const QString& kept);
    /// Lets the user select a region of the screen, and translates the text in it.
    QCoro::Task<void> captureScreenAndTranslate();
    /// Makes the text in a picture the input. Does nothing for a file that is no picture.
    QCoro::Task<void> performOCR(ImageSource image, AutoTranslate autoTranslate);
    /// Uses the first item: the text in a picture, or the text of a text file. Returns whether it may be
    /// usable; a file that turns out not to be is ignored without an error.
    bool handleDrop(const QList<DroppedItem>& items);
    void toggleSpeech();
    void copyResult();
    void clear();
    void dismissError();

private:
    QCoro::Task<void> translate(QString text, std::stop_token stop);
    QCoro::Task<void> translateFile(QString path);
    QCoro::Task<void> pastePicture(AutoTranslate autoTranslate);
    void endRecognition(const std::stop_token& stop, const QString& text,
        const std::optional<QString>& failure, AutoTranslate autoTranslate);
    void takeText(const QString& text, AutoTranslate autoTranslate);
    /// Whether another translate panel is shown now; what arrives belongs to that one.
    [[nodiscard]] bool isReplaced() const;
    void countRecognitions(int change);
    /// Whether a text is short enough; if not, shows an error.
    [[nodiscard]] bool admits(const QString& text);

    void showError(const std::optional<QString>& message);
    /// Shows what kept a text from being translated; if the panel was left, on the next one.
    void tell(const QString& failure);
    void showResult(const QString& text);

    Dependencies m_needs;
    QString m_translatedText;  ///< the input that `outputText` is the translation of
    bool m_isResultAwaited = false;
    int m_recognitions = 0;           ///< number of this panel's recognitions under way
    qint64 m_errors = 0;              ///< how often the error has changed
    qint64 m_errorsWhileReading = 0;  ///< `m_errors` when the last recognition began
    std::optional<QString> m_errorBeforeReading;
    QPointer<QObject> m_panel;      ///< the panel that shows this state
    QPointer<QObject> m_mainState;  ///< the owner of the input, the settings and the history
    std::stop_source m_currentTask{std::nostopstate};
    ScheduledCall m_copyFeedbackEnd;
};

}  // namespace tralio
