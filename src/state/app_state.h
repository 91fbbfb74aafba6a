#pragma once

#include <QPointer>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>
#include <stop_token>

#include "common/observable_object.h"
#include "state/key_value_store.h"

namespace tralio {

/// Where the shell (tray item, hot keys, clipboard check) and the panels in the popover signal each other
/// without knowing each other. Nothing in it is stored. Used from the main thread.
class AppState final : public ObservableObject {
    Q_OBJECT

public:
    using ObservableObject::ObservableObject;

    /// Text for the translate panel, which clears this when it takes the text over.
    Observable<QString> pendingTextToTranslate{*this};
    /// Whether the panel is to send that text when it takes it over.
    bool isPendingTextWanted = true;
    /// A new id for every accepted request, so that requesting the same text again is a change, too.
    Observable<std::optional<QUuid>> translateTriggerId{*this};
    /// A new id each time the popover opens.
    Observable<QUuid> openPopoverSignal{*this, QUuid::createUuid()};
    Observable<bool> showOnboarding{*this, false};
    /// What the shell has to say for a moment, in the words that the user is shown; empty otherwise. What
    /// comes next takes its place.
    Observable<QString> notice{*this};
    /// A picture is being read, for a panel or for the shell.
    Observable<bool> isReading{*this, false};
    /// What comes from elsewhere, and then becomes a reading or the input.
    enum class Awaited { picture, textFile };
    /// What is awaited: the owner of the clipboard may need seconds to give a picture, and a file system may
    /// hang. Changed by the functions below alone.
    Observable<std::optional<Awaited>> awaited{*this};
    /// The number of lines read so far of the picture that is being read.
    Observable<qsizetype> linesRead{*this, 0};
    /// What kept the text of a picture or a file, whose panel was left while it was read, from being
    /// translated, until the panel shown now has displayed it.
    Observable<std::optional<QString>> readingFailure{*this};
    /// The translate panel, while there is one; else null.
    QPointer<QObject> translatePanel;

    /// Trouble with the store that the user has not acknowledged yet. Until then the server may not be the
    /// one that the user chose: nothing is sent that was not requested in the window.
    Observable<std::optional<StoreTrouble>> storeTrouble{*this};

    /// Whether the user's key has not come from the desktop's keyring yet, which may be locked.
    Observable<bool> isKeyAwaited{*this, false};

    /// The clipboard's change count when the shell last handled it, so that no content is translated twice;
    /// -1 at first. Not observable.
    qint64 lastHandledChangeCount = -1;

    // Installed by the shell at launch.
    std::function<void()> onHidePopover;
    std::function<void()> onShowPopover;
    std::function<void()> onStoreTroubleDismissed;
    std::function<void()> onUnlockKey;

    /// Asks the translate panel to translate `text`, trimmed; blank text is dropped. The text is in its place
    /// before the trigger changes. Does not open the popover.
    void requestTranslation(const QString& text);
    /// The same, but the user has to say yes: the text is put into the input, and not sent.
    void offerTranslation(const QString& text);
    void notifyPopoverOpened();

    /// Registers the stop source of a reading that begins, and stops the one before: one picture is read at
    /// a time, and nobody waits for the older one any more.
    void beginReading(std::stop_source reading);
    /// Called when the reading with this token has ended; ignored if another has begun since.
    void endReading(const std::stop_token& reading);
    void stopReading();

    /// Registers the stop source of something that is awaited. It is given up for what is awaited next, for
    /// any reading or text that comes from elsewhere, and whenever the reading is stopped.
    void beginAwaiting(Awaited what, std::stop_source stop);
    /// Called when what has this token has come, or will not; ignored if something else is awaited since.
    void endAwaiting(const std::stop_token& stop);
    void stopAwaiting();

    // These do nothing before the shell has installed the actions.
    void showPopover();
    void hidePopover();
    void dismissStoreTrouble();
    void unlockKey();

private:
    void bring(const QString& text, bool isWanted);

    std::stop_source m_reading{std::nostopstate};
    std::stop_source m_awaiting{std::nostopstate};
};

}  // namespace tralio
