#include "app/app_delegate.h"

#include <QPointer>
#include <QStringBuilder>

#include <utility>

#include "common/debug_log.h"
#include "common/excerpt.h"
#include "common/localized_error.h"
#include "hotkeys/hot_key_service.h"
#include "hotkeys/pasteboard.h"
#include "ocr/ocr_error.h"
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

constexpr auto noticeTime = 2s;
constexpr auto errorTime = 6s;
const QString nothingSelected = u"Không có chữ nào đang được chọn"_s;
const QString confirmOffer = u"Nhấn Return để dịch chữ này"_s;
const QString nothingInCapture = u"Không tìm thấy chữ trong vùng đã chụp"_s;

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

void AppDelegate::handleGlobalHotKey() {
    debugLog(u"handleGlobalHotKey: triggered"_s);
    // Two at once would get one text twice, or copy from our own popover.
    if (std::exchange(m_isFetching, true))
        return;
    m_services.hotKeys.fetchSelectedText([self = QPointer(this)](const std::optional<QString>& text) {
        if (!self)
            return;
        debugLog(u"handleGlobalHotKey: fetchSelectedText finished with text='" %
            (text ? excerpt(*text) : u"nil"_s) % u"'");
        self->m_services.clock.after(0ms, self, [self = self.data(), text] {
            self->m_services.captures.onceDrawn(self, [self, text] { self->showSelection(text); });
        });
    });
}

void AppDelegate::showSelection(const std::optional<QString>& text) {
    showPopover();
    if (!text || text->isEmpty()) {
        m_isFetching = false;
        translateSelectionOnceFocused();
        return;
    }
    // What the fetch may have left on the clipboard is this very text: it is not new to the check of the
    // clipboard.
    m_services.appState.lastHandledChangeCount = m_services.pasteboard.changeCount();
    m_lastHandledText = text->trimmed();
    translateLater(*text);
}

void AppDelegate::translateSelectionOnceFocused() {
    using Obstacle = SelectedTextFetch::Obstacle;
    const auto obstacle = m_services.hotKeys.obstacle();
    if (obstacle == Obstacle::ownWindow)
        return;  // as when the key is pressed twice: what the first press has brought stands there
    if (!m_services.readSelectionOnceFocused || obstacle != Obstacle::none) {
        say(nothingSelected, noticeTime);
        return;
    }
    m_services.readSelectionOnceFocused([self = QPointer(this)](const LateSelection& selection) {
        if (!self)
            return;
        if (selection.text.trimmed().isEmpty()) {
            self->say(nothingSelected, noticeTime);
        } else if (selection.age == LateSelection::Age::recent) {
            self->m_services.appState.requestTranslation(selection.text);
        } else {
            self->m_services.appState.offerTranslation(selection.text);
            self->say(confirmOffer, errorTime);
        }
    });
}

QCoro::Task<void> AppDelegate::handleScreenOCRHotKey() {
    debugLog(u"handleScreenOCRHotKey: triggered"_s);
    const QPointer<AppDelegate> self = this;  // the user may take all day
    std::optional<QString> text;
    bool failed = false;
    bool isReading = false;  // this one, and not another that was under way when the key was pressed again
    QString notice;
    auto noticeLasts = noticeTime;
    const std::stop_source reading;
    const std::stop_token stop = reading.get_token();
    try {
        auto capture = m_services.captures.captureInteractiveAndRecognize(
            [self] {
                if (self)
                    self->m_services.popover.performClose();
            },
            [self] {
                if (self)
                    self->showPopover();
            },
            [self, &isReading, reading] {
                if (self) {
                    isReading = true;
                    self->m_services.appState.beginReading(reading);
                    self->m_services.appState.isReadingCapture = true;
                }
            },
            stop,
            [self, stop](qsizetype lines) {
                if (self && !stop.stop_requested())
                    self->m_services.appState.linesRead = lines;
            });
        text = co_await std::move(capture);
        if (text && text->trimmed().isEmpty())
            notice = nothingInCapture;
    } catch (const LocalizedError& error) {
        debugLog(u"handleScreenOCRHotKey error: " % error.errorDescription());
        failed = true;
        const auto* reading = dynamic_cast<const OCRError*>(&error);
        const bool isEmpty = reading != nullptr && reading->kind() == OCRError::Kind::noTextFound;
        notice = isEmpty ? nothingInCapture : error.errorDescription();
        noticeLasts = isEmpty ? noticeTime : errorTime;
    }
    if (!self)
        co_return;
    if (isReading)
        m_services.appState.isReadingCapture = false;
    if (stop.stop_requested())
        co_return;
    if (failed)
        showPopover();
    else if (text && !text->trimmed().isEmpty())
        m_services.appState.requestTranslation(text->trimmed());
    if (!notice.isEmpty())
        say(notice, noticeLasts);
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

void AppDelegate::say(const QString& notice, std::chrono::milliseconds time) {
    m_services.appState.notice = notice;
    m_noticeEnd = m_services.clock.after(time, [this] { m_services.appState.notice = QString(); });
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
