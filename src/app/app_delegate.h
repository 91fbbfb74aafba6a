#pragma once

#include <QObject>
#include <qcorotask.h>

#include "app/popover_host.h"

namespace tralio {

class AppSettings;
class AppState;
class Clock;
class HotKeyService;
class Pasteboard;
class ScreenCaptureService;

/// Where what the user does anywhere on the desktop meets the user interface: the tray item, the hot keys and
/// the popover. It translates nothing itself: every text goes to `AppState::requestTranslation`.
class AppDelegate final : public QObject {
public:
    /// What the delegate works with. All of it outlives the delegate.
    struct Services {
        AppState& appState;
        const AppSettings& settings;
        HotKeyService& hotKeys;
        Pasteboard& pasteboard;
        ScreenCaptureService& captures;
        Clock& clock;
        PopoverHost& popover;
        StatusItemHost& statusItem;
    };

    explicit AppDelegate(Services services);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();

    /// Tells the panels that the popover opens, and shows it at the status item.
    void showPopover();
    void statusBarButtonClicked();

    /// Fetches the selected text of the application in front and has it translated. The popover opens even
    /// when nothing is selected.
    void handleGlobalHotKey();

    /// Lets the user draw a region of the screen and has the text in it translated. The popover is away
    /// meanwhile.
    QCoro::Task<void> handleScreenOCRHotKey();

private:
    void translateLater(const QString& text);

    Services m_services;
};

}  // namespace tralio
