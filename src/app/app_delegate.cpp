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

/// Between showing the popover and the request, so that the panel exists to take it.
constexpr auto requestDelay = 80ms;
/// Of several texts from other programs within this time only the last one is translated.
constexpr auto quietTime = 300ms;
/// Lets the popover be painted first.
constexpr auto preparationDelay = 20ms;

/// The time for a tray menu to leave the screen and give the keyboard back to the window in front.
constexpr auto menuDelay = 150ms;

constexpr auto updateCheckDelay = 2s;
/// At login the tray may start after the program.
constexpr auto trayDelay = 4s;

QPointer<AppDelegate> running;

}  // namespace

AppDelegate* AppDelegate::shared() {
    return running;
}

AppDelegate::AppDelegate(Dependencies needs) : m_needs(std::move(needs)) {}

AppDelegate::~AppDelegate() {
    m_needs.appState.onHidePopover = nullptr;
    m_needs.appState.onShowPopover = nullptr;
}

void AppDelegate::applicationDidFinishLaunching() {
    running = this;
    const QPointer<AppDelegate> self = this;  // the actions may be called after the delegate is destroyed
    m_needs.statusItem.setAction([self] {
        if (self)
            self->statusBarButtonClicked();
    });

    m_needs.statusItem.setMenu(menu());

    const AppSettings& settings = m_needs.settings;
    m_needs.hotKeys.registerGlobalHotKeys(
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

    m_needs.appState.onHidePopover = [this] { m_needs.popover.performClose(); };
    m_needs.appState.onShowPopover = [this] { showPopover(); };

    m_needs.clock.after(updateCheckDelay, this, [this] { m_needs.updates.checkForUpdates(false); });
    if (m_needs.isFirstStart)
        m_needs.clock.after(trayDelay, this, [this] { introduceWithoutTray(); });
}

QList<StatusMenuEntry> AppDelegate::menu() {
    const auto onceMenuIsGone = [this](auto action) {
        return [self = QPointer(this), action] {
            if (self)
                self->m_needs.clock.after(menuDelay, self, [self, action] { (self->*action)(); });
        };
    };
    return {{u"Dịch phần đang chọn"_s, onceMenuIsGone(&AppDelegate::handleGlobalHotKey)},
        {u"Chụp màn hình"_s, onceMenuIsGone(&AppDelegate::handleScreenOCRHotKey)},
        {u"Mở Tralio"_s, onceMenuIsGone(&AppDelegate::showPopover)}, {}, {u"Thoát"_s, m_needs.quit}};
}

void AppDelegate::showPopover() {
    m_needs.captures.onceDrawn(
        this,
        [this] {
            m_needs.appState.notifyPopoverOpened();
            m_needs.popover.show(m_needs.statusItem.frame());
        });
}

void AppDelegate::introduceWithoutTray() {
    if (m_needs.hotKeys.keys().isUserAsked()) {  // our window would cover the desktop's dialog
        m_needs.clock.after(trayDelay, this, [this] { introduceWithoutTray(); });
        return;
    }
    if (!m_needs.statusItem.isInTray() && !m_needs.popover.isShown())
        showPopover();
}

void AppDelegate::statusBarButtonClicked() {
    if (m_needs.popover.isShown()) {
        m_needs.popover.performClose();
        return;
    }
    showPopover();
    if (m_needs.settings.autoPaste())
        m_needs.captures.onceDrawn(this, [this] {
            m_needs.clock.after(requestDelay, this, [this] { checkAndAutoTranslateClipboard(); });
        });
}

void AppDelegate::translateSelectedText(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return;
    m_needs.appState.stopReading();  // of a picture, which came before
    m_needs.clock.after(0ms, this, [this, trimmed] {
        m_nextText = trimmed;
        if (!std::exchange(m_isShowDue, true))
            m_needs.captures.onceDrawn(this, [this] { showNextText(); });
    });
}

void AppDelegate::checkAndAutoTranslateClipboard() {
    if (m_needs.appState.isReading())
        return;  // which the window was opened to look at
    const qint64 changeCount = m_needs.pasteboard.changeCount();
    if (changeCount == m_needs.appState.lastHandledChangeCount ||
        m_needs.pasteboard.isConcealed().value_or(true))
        return;
    const QString text = m_needs.pasteboard.string().value_or(QString()).trimmed();
    if (text.isEmpty())
        return;
    // Clipboard managers take over a content as its owner, which counts as a change although the text is the
    // same.
    const bool isHandled = text == m_lastHandledText;
    noteHandled(changeCount, text);
    if (!isHandled && text != m_needs.pasteboard.ownString().trimmed())
        m_needs.appState.requestTranslation(text);
}

void AppDelegate::noteHandled(qint64 changeCount, const QString& text) {
    m_needs.appState.lastHandledChangeCount = changeCount;
    m_lastHandledText = text.trimmed();
}

void AppDelegate::translateLater(const QString& text) {
    dropNextText();
    prepare();
    m_needs.clock.after(requestDelay, this, [this, text] {
        m_isFetching = false;
        m_needs.appState.requestTranslation(text);
    });
}

void AppDelegate::dropNextText() {
    m_nextText.clear();
}

void AppDelegate::showNextText() {
    m_isShowDue = false;
    showPopover();
    if (std::exchange(m_isRequestDue, true))
        return;
    prepare();
    m_needs.clock.after(requestDelay, this, [this] { requestNextText(); });
}

void AppDelegate::prepare() {
    if (m_needs.prepareToTranslate)
        m_needs.clock.after(preparationDelay, this, m_needs.prepareToTranslate);
}

void AppDelegate::requestNextText() {
    if (m_isQuiet)
        return;
    m_isRequestDue = false;
    if (m_nextText.isEmpty())
        return;
    m_isQuiet = true;
    m_needs.clock.after(quietTime, this, [this] {
        m_isQuiet = false;
        if (m_isRequestDue)
            requestNextText();
    });
    m_needs.appState.requestTranslation(std::exchange(m_nextText, {}));
}

}  // namespace tralio
