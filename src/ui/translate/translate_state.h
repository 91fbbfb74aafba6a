#pragma once

#include <QPointer>
#include <QStringList>
#include <qcorotask.h>

#include <optional>
#include <stop_token>

#include "common/binding.h"
#include "common/observable_object.h"

namespace tralio {

class AIService;
class AppSettings;
class AppState;
class Clock;
class Pasteboard;

/// The translate panel without its widgets: what it shows, and what happens when the user acts or the shell
/// requests a translation. Lives as long as the panel is shown; the input text is the main view's, and
/// survives. Used from the main thread.
class TranslateState final : public ObservableObject {
    Q_OBJECT

public:
    /// What the panel works with. All of it outlives the panel.
    struct Services {
        AIService& ai;
        AppSettings& settings;
        AppState& appState;
        Pasteboard& pasteboard;
        Clock& clock;
    };

    /// The languages offered, by the names that also go to the model.
    [[nodiscard]] static const QStringList& languages();
    [[nodiscard]] static QStringList targetLanguages();

    TranslateState(Services services, Binding<QString> inputText);

    // State

    Binding<QString> inputText;
    Observable<QString> outputText{*this};
    Observable<QString> sourceLang;
    Observable<QString> targetLang;
    Observable<bool> isTranslating{*this, false};
    Observable<std::optional<QString>> errorMessage{*this};
    Observable<bool> isCopied{*this, false};

    [[nodiscard]] AppSettings& settings() { return m_services.settings; }
    [[nodiscard]] bool canTranslate() const;

    // Actions

    /// Translates the input. A translation that still runs goes on; results are taken in the order in which
    /// they come.
    void performTranslate();
    /// Gives up the translation that was started last, without a message.
    void cancel();
    void swapLanguages();
    /// Takes over a text that the shell has left for this panel.
    void checkAndTriggerPendingTranslation();
    void copyResult();
    void clear();
    void dismissError();

private:
    QCoro::Task<void> translate(QString text, std::stop_token stop);

    Services m_services;
    std::stop_source m_currentTask{std::nostopstate};
};

}  // namespace tralio
