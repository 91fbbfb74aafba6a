#pragma once

#include <QObject>
#include <qcorotask.h>

#include "app/popover_host.h"
#include "common/clock.h"
#include "hotkeys/late_selection.h"

namespace tralio {

class AppSettings;
class AppState;
class HotKeyService;
class Pasteboard;
class ScreenCaptureService;
class UpdateService;

/// Connects the user's actions on the desktop with the user interface: the tray item, the hot keys, texts
/// from other programs, and the popover. It translates nothing itself: it hands every text to `AppState`, to
/// be translated or only to be offered.
class AppDelegate final : public QObject {
public:
    /// The objects that the delegate uses. All of them outlive it.
    struct Dependencies {
        AppState& appState;
        const AppSettings& settings;
        HotKeyService& hotKeys;
        Pasteboard& pasteboard;
        ScreenCaptureService& captures;
        UpdateService& updates;
        Clock& clock;
        PopoverHost& popover;
        StatusItemHost& statusItem;
        /// Reads the selection in sessions that show it only to the program in front; empty elsewhere.
        LateSelectionReader readSelectionOnceFocused = {};
        /// The program has never been used before.
        bool isFirstStart = false;
        /// Called when a translation will be requested soon.
        std::function<void()> prepareToTranslate = {};
        /// Ends the program.
        std::function<void()> quit = {};
    };

    explicit AppDelegate(Dependencies needs);
    ~AppDelegate() override;

    /// The running delegate; null before it is launched.
    [[nodiscard]] static AppDelegate* shared();

    void applicationDidFinishLaunching();

    /// Tells the panels that the popover opens, and shows it at the tray item. If the user is drawing a
    /// region, waits until that is done.
    void showPopover();
    /// Opens or closes the popover. When it opens, new text on the clipboard may be translated.
    void statusBarButtonClicked();

    /// Fetches the selected text of the application in front and has it translated. The popover opens even
    /// when nothing is selected.
    void handleGlobalHotKey();

    /// Lets the user draw a region of the screen and has the text in it translated. The popover is hidden
    /// meanwhile.
    QCoro::Task<void> handleScreenOCRHotKey();

    /// Has a text translated that another program has sent.
    void translateSelectedText(const QString& text);

    /// Has the clipboard's text translated if it is new, is no password, and was not copied by this program.
    void checkAndAutoTranslateClipboard();

private:
    /// The entries of the tray item's menu.
    [[nodiscard]] QList<StatusMenuEntry> menu();
    /// Opens the popover if there is no tray: otherwise a user who starts the program for the first time
    /// would see nothing.
    void introduceWithoutTray();
    /// Shows the popover with the text that the hot key has fetched, which may be none.
    void showSelection(const std::optional<QString>& text);
    void translateSelectionOnceFocused();
    /// From now on the clipboard check takes neither this content nor this text for new, whoever owns it.
    void noteHandled(qint64 changeCount, const QString& text);
    void translateLater(const QString& text);
    /// For texts from other programs, of which the newest that waits is requested, at most one in 300 ms:
    /// programs can send thousands, and each request is paid for.
    void showNextText();
    void requestNextText();
    /// Called for a text that the user asked for: what still waits came before it.
    void dropNextText();
    void prepare();
    void say(const QString& notice, std::chrono::milliseconds time);

    Dependencies m_needs;
    bool m_isFetching = false;  ///< from the press of the text hot key until its text has been requested
    QString m_nextText;         ///< the latest one from another program
    bool m_isShowDue = false;
    bool m_isRequestDue = false;
    bool m_isQuiet = false;  ///< for a moment after a request
    ScheduledCall m_noticeEnd;
    qint64 m_changeCountBeforeFetch = 0;
    QString m_lastHandledText;  ///< trimmed; belongs to `AppState::lastHandledChangeCount`
};

}  // namespace tralio
