#pragma once

#include <QPointer>
#include <QStringList>
#include <QUrl>
#include <qcorotask.h>

#include <memory>
#include <optional>
#include <stop_token>

#include "common/binding.h"
#include "common/observable_object.h"
#include "ocr/text_recognizer.h"
#include "ui/translate/dropped_item.h"

namespace tralio {

class AIService;
class AppSettings;
class AppState;
class Clock;
class OCRService;
class Pasteboard;
class ScreenCaptureService;
class SpeechService;
class TranslationHistoryStore;

/// Whether a text that was found is also translated.
enum class AutoTranslate { no, yes };

/// The translate panel without its widgets: what it shows, and what happens when the user acts or the shell
/// requests a translation. Used from the main thread.
///
/// Made anew whenever the panel is shown; the input text is the main view's, and survives. What it has begun
/// keeps it alive: a translation that ends after its panel was left is still recorded.
class TranslateState final : public ObservableObject, public std::enable_shared_from_this<TranslateState> {
    Q_OBJECT

public:
    /// What the panel works with. All of it outlives the panel and, except for `settings` and `history`, what
    /// the panel has begun; those two go together.
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

    /// The languages offered, by the names that also go to the model.
    [[nodiscard]] static const QStringList& languages();
    [[nodiscard]] static QStringList targetLanguages();

    TranslateState(Dependencies needs, Binding<QString> inputText);

    /// Takes over the texts that the shell leaves for this panel, from now on until `panel` is gone.
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

    /// What the error strip says: what is wrong with the settings, until the user takes it away, and the
    /// error.
    [[nodiscard]] std::optional<QString> message() const;
    [[nodiscard]] AppSettings& settings() { return m_needs.settings; }
    [[nodiscard]] SpeechService& speechService() { return m_needs.speech; }
    [[nodiscard]] AppState& appState() { return m_needs.appState; }
    [[nodiscard]] bool canTranslate() const;
    /// Whether a picture is read, for this panel, one that was left, or the shell.
    [[nodiscard]] bool isRecognizing() const;
    /// How many lines of that picture have been read.
    [[nodiscard]] qsizetype linesRead() const;
    /// What stands in the place of the count for a moment; empty otherwise.
    [[nodiscard]] QString notice() const;
    /// Whether the result is of another input, or another one was asked for and has not come.
    [[nodiscard]] bool isResultStale() const;

    // Actions

    /// Translates the input. A translation that still runs goes on; results are taken in the order in which
    /// they come.
    void performTranslate();
    /// Gives up the picture that is read and the translation that was started last, without a message.
    void cancel();
    void swapLanguages();
    /// Takes over a text that the shell has left for this panel; only that, while the settings may not be
    /// the user's.
    void checkAndTriggerPendingTranslation();
    /// Takes the clipboard's text or else the text in its picture.
    void pasteFromClipboard(AutoTranslate autoTranslate);
    /// Where a text comes from that is put into the input.
    enum class TextOrigin { clipboard, selection, drag };
    /// What the input takes of a text that is dropped on it or put there by a key or the middle button:
    /// nothing when it would become too long, of which the user is told. `kept` is what stays of the input.
    /// Clipboard and selection are read here.
    [[nodiscard]] std::optional<QString> textToInsert(
        TextOrigin origin, const QString& kept, const QString& dragged = {});
    /// Lets the user draw a region of the screen, and translates the text in it.
    QCoro::Task<void> captureScreenAndTranslate();
    /// Takes the text in a picture as the input. Nothing happens for a file that is no picture.
    QCoro::Task<void> performOCR(ImageSource image, AutoTranslate autoTranslate);
    /// Takes the first item: the text in a picture, or a text file's text. Whether it can be of use; a file
    /// that turns out not to be is passed over in silence.
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
    /// Whether the user looks at another panel of this kind, to which it belongs what comes here.
    [[nodiscard]] bool isReplaced() const;
    void countRecognitions(int change);
    /// Gives up what has not come yet of the clipboard's picture or of a text file.
    void stopAwaiting();
    /// Whether a text is short enough; the user is told when it is not.
    [[nodiscard]] bool admits(const QString& text);

    void showError(const std::optional<QString>& message);

    Dependencies m_needs;
    QString m_translatedText;  ///< of which `outputText` is the translation
    bool m_isResultAwaited = false;
    int m_recognitions = 0;           ///< of this panel's, that have not ended
    qint64 m_errors = 0;              ///< how often the error has changed
    qint64 m_errorsWhileReading = 0;  ///< as it stood when the last reading began
    std::optional<QString> m_errorBeforeReading;
    int m_awaitedFile = 0;          ///< changes when the text file that is being read counts no more
    QPointer<QObject> m_panel;      ///< that shows this
    QPointer<QObject> m_mainState;  ///< whoever owns the input, the settings and the history
    std::optional<std::stop_source> m_awaitedPicture;  ///< from the clipboard's owner
    std::stop_source m_currentTask{std::nostopstate};
};

}  // namespace tralio
