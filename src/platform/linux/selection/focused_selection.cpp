#include "platform/linux/selection/focused_selection.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTimer>
#include <QWindow>

#include <utility>

#include "common/text_limit.h"
#include "platform/linux/selection/current_selection.h"

namespace tralio {
namespace {

using namespace std::chrono_literals;

constexpr auto focusLimit = 1s;
/// Shortly after selecting a text the user has hardly gone elsewhere.
constexpr auto recentTime = 10s;
/// The compositor announces the selection just after it has given the focus.
constexpr auto selectionDelay = 50ms;

}  // namespace

void FocusedSelection::read(std::function<void(const LateSelection&)> deliver) {
    m_deliver = std::move(deliver);
    const quint64 request = ++m_request;
    if (QGuiApplication::focusWindow()) {
        take();
        return;
    }
    connect(
        qGuiApp, &QGuiApplication::focusWindowChanged, this, &FocusedSelection::take, Qt::UniqueConnection);
    QTimer::singleShot(focusLimit, this, [this, request] {
        if (request == m_request && m_deliver)
            std::exchange(m_deliver, nullptr)({});
    });
}

void FocusedSelection::take() {
    if (!m_deliver || !QGuiApplication::focusWindow())
        return;
    QTimer::singleShot(
        selectionDelay, this, [this, deliver = std::exchange(m_deliver, nullptr)] { deliver(look()); });
}

LateSelection FocusedSelection::look() {
    const QClipboard* clipboard = QGuiApplication::clipboard();
    if ((!readText && !clipboard->supportsSelection()) || clipboard->ownsSelection())
        return {};
    const auto read = readText ? readText() : clipboard->text(QClipboard::Selection);
    if (!read)
        return {};  // no answer in time: the selection may still be there, and new, the next time
    QString text = *read;
    if (isTooLong(text))
        text = beginningOfLongText(text);
    const auto before = std::exchange(m_lastSeen, text);
    const auto changed = std::exchange(m_changed, {});
    if ((before == text && !changed) || looksLikePassword(text, Marking::byDoubleClick))
        return {};
    const bool isRecent = changed ? now() - *changed < recentTime : before.has_value();
    const bool isMeant = isRecent && !looksLikePassword(text, Marking::unknown);
    return {text, isMeant ? LateSelection::Use::translate : LateSelection::Use::offer};
}

}  // namespace tralio
