#include "app/app_delegate.h"

#include <QPointer>

#include <utility>

#include "common/debug_log.h"
#include "hotkeys/hot_key_service.h"
#include "hotkeys/pasteboard.h"
#include "ocr/screen_capture_service.h"
#include "state/app_settings.h"
#include "state/app_state.h"
#include "update/update_service.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Between showing the popover and raising a request, so that the panel is there to take it.
constexpr auto requestDelay = 80ms;
/// Between two texts from other programs.
constexpr auto quietTime = 300ms;
/// The popover is painted first.
constexpr auto preparationDelay = 20ms;

/// Until a menu of the tray has left the screen, and the window in front has the keyboard back.
constexpr auto menuDelay = 150ms;

constexpr auto updateCheckDelay = 2s;
/// At a login the tray may come after the program.
constexpr auto trayDelay = 4s;

QPointer<AppDelegate> running;

}  // namespace

AppDelegate* AppDelegate::shared() {
    return running;
}

AppDelegate::AppDelegate(Dependencies services) : m_services(std::move(services)) {}

AppDelegate::~AppDelegate() {
    m_services.appState.onHidePopover = nullptr;
    m_services.appState.onShowPopover = nullptr;
}

void AppDelegate::applicationDidFinishLaunching() {
    running = this;
    const QPointer<AppDelegate> self = this;  // the tray item and the hot keys outlive the delegate
    m_services.statusItem.setAction([self] {
        if (self)
            self->statusBarButtonClicked();
    });

    m_services.statusItem.setMenu(menu());

    const AppSettings& settings = m_services.settings;
    m_services.hotKeys.registerGlobalHotKeys(
        settings.hotKeyKeyCode(), settings.hotKeyModifiers(),
        [self] {
            if (self)
                self->handleGlobalHotKey();
        },
        settings.ocrHotKeyKeyCode(), settings.ocrHotKeyModifiers(),
        [self] {
            if (self)
                self->handleScreenOCRHotKey();
        });

    m_services.appState.onHidePopover = [this] { m_services.popover.performClose(); };
    m_services.appState.onShowPopover = [this] { showPopover(); };

    m_services.clock.after(updateCheckDelay, this, [this] { m_services.updates.checkForUpdates(false); });
    if (m_services.isFirstStart)
        m_services.clock.after(trayDelay, this, [this] { introduceWithoutTray(); });
}

QList<StatusMenuEntry> AppDelegate::menu() {
    const auto onceMenuIsGone = [this](auto action) {
        return [self = QPointer(this), action] {
            if (self)
                self->m_services.clock.after(menuDelay, self, [self, action] { (self->*action)(); });
        };
    };
    return {{u"Dịch phần đang chọn"_s, onceMenuIsGone(&AppDelegate::handleGlobalHotKey)},
        {u"Chụp màn hình"_s, onceMenuIsGone(&AppDelegate::handleScreenOCRHotKey)},
        {u"Mở Tralio"_s, onceMenuIsGone(&AppDelegate::showPopover)}, {}, {u"Thoát"_s, m_services.quit}};
}

void AppDelegate::showPopover() {
    m_services.captures.onceDrawn(
        this,
        [this] {
            m_services.appState.notifyPopoverOpened();
            m_services.popover.show(m_services.statusItem.frame());
        });
}

void AppDelegate::introduceWithoutTray() {
    if (!m_services.statusItem.isInTray() && !m_services.popover.isShown())
        showPopover();
}

void AppDelegate::statusBarButtonClicked() {
    if (m_services.popover.isShown()) {
        m_services.popover.performClose();
        return;
    }
    showPopover();
    if (m_services.settings.autoPaste())
        m_services.clock.after(requestDelay, this, [this] { checkAndAutoTranslateClipboard(); });
}

void AppDelegate::translateSelectedText(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return;
    m_services.clock.after(0ms, this, [this, trimmed] {
        m_nextText = trimmed;
        if (!std::exchange(m_isShowDue, true))
            m_services.captures.onceDrawn(this, [this] { showNextText(); });
    });
}

void AppDelegate::checkAndAutoTranslateClipboard() {
    const qint64 changeCount = m_services.pasteboard.changeCount();
    if (changeCount == m_services.appState.lastHandledChangeCount || m_services.pasteboard.isConcealed())
        return;
    const QString text = m_services.pasteboard.string().value_or(QString()).trimmed();
    if (text.isEmpty())
        return;
    m_services.appState.lastHandledChangeCount = changeCount;
    // Clipboard managers take a content over as theirs, which counts as a change of the same text.
    const bool isHandled = text == std::exchange(m_lastHandledText, text);
    if (!isHandled && text != m_services.pasteboard.ownString().trimmed())
        m_services.appState.requestTranslation(text);
}

void AppDelegate::translateLater(const QString& text) {
    prepare();
    m_services.clock.after(requestDelay, this, [this, text] {
        m_isFetching = false;
        m_services.appState.requestTranslation(text);
    });
}

void AppDelegate::showNextText() {
    m_isShowDue = false;
    showPopover();
    if (std::exchange(m_isRequestDue, true))
        return;
    prepare();
    m_services.clock.after(requestDelay, this, [this] { requestNextText(); });
}

void AppDelegate::prepare() {
    if (m_services.prepareToTranslate)
        m_services.clock.after(preparationDelay, this, m_services.prepareToTranslate);
}

void AppDelegate::requestNextText() {
    if (m_isQuiet)
        return;
    m_isRequestDue = false;
    m_isQuiet = true;
    m_services.clock.after(quietTime, this, [this] {
        m_isQuiet = false;
        if (m_isRequestDue)
            requestNextText();
    });
    m_services.appState.requestTranslation(m_nextText);
}

}  // namespace tralio
