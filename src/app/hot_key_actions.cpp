// The part of AppDelegate that handles the two hot keys.
#include <QPointer>
#include <QStringBuilder>

#include <utility>

#include "app/app_delegate.h"
#include "common/debug_log.h"
#include "common/excerpt.h"
#include "common/localized_error.h"
#include "hotkeys/hot_key_service.h"
#include "hotkeys/pasteboard.h"
#include "ocr/ocr_error.h"
#include "ocr/screen_capture_service.h"
#include "state/app_state.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto noticeTime = 2s;
constexpr auto errorTime = 6s;
const QString nothingSelected = u"Không có chữ nào đang được chọn"_s;
const QString confirmOffer = u"Nhấn Return để dịch chữ này"_s;
const QString nothingInCapture = u"Không tìm thấy chữ trong vùng đã chụp"_s;

}  // namespace

void AppDelegate::handleGlobalHotKey() {
    debugLog(u"handleGlobalHotKey: triggered"_s);
    // Two fetches at once would get one text twice, or copy from our own popover.
    if (std::exchange(m_isFetching, true))
        return;
    m_changeCountBeforeFetch = m_needs.pasteboard.changeCount();
    m_needs.hotKeys.fetchSelectedText([self = QPointer(this)](const std::optional<QString>& text) {
        if (!self)
            return;
        debugLog(u"handleGlobalHotKey: fetchSelectedText finished with text='" %
            (text ? excerpt(*text) : u"nil"_s) % u"'");
        if (text && !text->isEmpty())
            self->m_needs.appState.stopReading();  // of a picture, which came before
        // The user has begun to draw a region meanwhile, and is waiting for its text.
        if (self->m_needs.captures.isDrawing() && (!text || text->isEmpty())) {
            self->m_isFetching = false;
            return;
        }
        self->m_needs.clock.after(0ms, self, [self = self.data(), text] {
            self->m_needs.captures.onceDrawn(self, [self, text] { self->showSelection(text); });
        });
    });
}

void AppDelegate::showSelection(const std::optional<QString>& text) {
    showPopover();
    const qint64 changeCount = m_needs.pasteboard.changeCount();
    if (!text || text->isEmpty()) {
        if (m_needs.hotKeys.obstacle() == SelectedTextFetch::Obstacle::lineOfCaret)
            noteHandled(changeCount, m_needs.pasteboard.string().value_or(QString()));
        m_isFetching = false;
        translateSelectionOnceFocused();
        return;
    }
    // The fetch may have left this very text on the clipboard: the clipboard check must not take it for new.
    noteHandled(changeCount, changeCount != m_changeCountBeforeFetch ? *text : m_lastHandledText);
    translateLater(*text);
}

void AppDelegate::translateSelectionOnceFocused() {
    using Obstacle = SelectedTextFetch::Obstacle;
    const auto obstacle = m_needs.hotKeys.obstacle();
    if (obstacle == Obstacle::ownWindow)
        return;  // as when the key is pressed twice: the result of the first press is shown there
    if (!m_needs.readSelectionOnceFocused || obstacle != Obstacle::none) {
        say(nothingSelected, noticeTime);
        return;
    }
    m_needs.readSelectionOnceFocused([self = QPointer(this)](const LateSelection& selection) {
        if (!self)
            return;
        if (selection.text.trimmed().isEmpty()) {
            self->say(nothingSelected, noticeTime);
            return;
        }
        self->noteHandled(self->m_needs.pasteboard.changeCount(), self->m_lastHandledText);
        self->dropNextText();
        self->m_needs.appState.stopReading();
        if (selection.use == LateSelection::Use::translate) {
            self->m_needs.appState.requestTranslation(selection.text);
        } else {
            self->m_needs.appState.offerTranslation(selection.text);
            self->say(confirmOffer, errorTime);
        }
    });
}

QCoro::Task<void> AppDelegate::handleScreenOCRHotKey() {
    debugLog(u"handleScreenOCRHotKey: triggered"_s);
    if (m_needs.captures.isReading()) {
        showPopover();  // which shows the progress and has the button to stop it
        co_return;
    }
    const QPointer<AppDelegate> self = this;  // the user may take any time
    std::optional<QString> text;
    bool failed = false;
    QString notice;
    auto noticeLasts = noticeTime;
    const std::stop_source reading;
    const std::stop_token stop = reading.get_token();
    try {
        auto capture = m_needs.captures.captureInteractiveAndRecognize(
            [self] {
                if (self)
                    self->m_needs.popover.performClose();
            },
            [self] {
                if (self)
                    self->showPopover();
            },
            [self, reading] {
                if (self)
                    self->m_needs.appState.beginReading(reading);
            },
            stop,
            [self, stop](qsizetype lines) {
                if (self && !stop.stop_requested())
                    self->m_needs.appState.linesRead = lines;
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
    m_needs.appState.endReading(stop);
    if (stop.stop_requested())
        co_return;
    if (failed) {
        showPopover();
    } else if (text && !text->trimmed().isEmpty()) {
        dropNextText();
        m_needs.appState.requestTranslation(text->trimmed());
    }
    if (!notice.isEmpty())
        say(notice, noticeLasts);
}

void AppDelegate::say(const QString& notice, std::chrono::milliseconds time) {
    m_needs.appState.notice = notice;
    m_noticeEnd = m_needs.clock.after(time, [this] { m_needs.appState.notice = QString(); });
}

}  // namespace tralio
