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

/// Where what the user does anywhere on the desktop meets the user interface: the tray item, the hot keys,
/// texts from other programs, and the popover. It translates nothing itself: it hands every text to
/// `AppState`, to be translated or only to be offered.
class AppDelegate final : public QObject {
public:
    /// What the delegate works with. All of it outlives the delegate.
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
        /// Reads the selection where it shows only to the program in front; empty elsewhere.
        LateSelectionReader readSelectionOnceFocused = {};
        /// Nobody has used the program yet.
        bool isFirstStart = false;
        /// A translation will be asked for soon.
        std::function<void()> prepareToTranslate = {};
        /// Ends the program.
        std::function<void()> quit = {};
    };

    explicit AppDelegate(Dependencies needs);
    ~AppDelegate() override;

    /// The delegate that runs; null before its launch.
    [[nodiscard]] static AppDelegate* shared();

    void applicationDidFinishLaunching();

    /// Tells the panels that the popover opens, and shows it at the status item; while the user draws a
    /// region, once that is drawn.
    void showPopover();
    /// Opens or closes the popover; opening it may have new text on the clipboard translated.
    void statusBarButtonClicked();

    /// Fetches the selected text of the application in front and has it translated. The popover opens even
    /// when nothing is selected.
    void handleGlobalHotKey();

    /// Lets the user draw a region of the screen and has the text in it translated. The popover is away
    /// meanwhile.
    QCoro::Task<void> handleScreenOCRHotKey();

    /// Has a text that another program hands over translated.
    void translateSelectedText(const QString& text);

    /// Has the clipboard's text translated, if it is new, no password, and not from here.
    void checkAndAutoTranslateClipboard();

private:
    /// What the status item's menu offers.
    [[nodiscard]] QList<StatusMenuEntry> menu();
    /// Where there is no tray, who starts the program for the first time would see nothing of it.
    void introduceWithoutTray();
    /// What the text hot key has got, which may be nothing.
    void showSelection(const std::optional<QString>& text);
    void translateSelectionOnceFocused();
    void translateLater(const QString& text);
    /// For a text from another program. One that comes before the last was requested, or just after, takes
    /// its place: programs can send them by the thousand, and each request is paid for.
    void showNextText();
    void requestNextText();
    void prepare();
    void say(const QString& notice, std::chrono::milliseconds time);

    Dependencies m_needs;
    bool m_isFetching = false;  ///< a selection, and until it has been requested
    QString m_nextText;         ///< from another program
    bool m_isShowDue = false;
    bool m_isRequestDue = false;
    bool m_isQuiet = false;  ///< just after a request
    ScheduledCall m_noticeEnd;
    QString m_lastHandledText;  ///< trimmed; goes with `AppState::lastHandledChangeCount`
};

}  // namespace tralio
