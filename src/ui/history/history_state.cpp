#include "ui/history/history_state.h"

#include <QLocale>

#include <utility>

#include "common/clock.h"
#include "hotkeys/pasteboard.h"
#include "ui/undo/undo_offer.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto copyFeedback = 1500ms;

}  // namespace

HistoryState::HistoryState(Dependencies needs, OnSelect onSelect)
    : m_needs(std::move(needs)), m_onSelect(std::move(onSelect)) {}

QString HistoryState::formatDate(const QDateTime& date) const {
    const QDateTime local = date.toLocalTime();
    const auto now = std::chrono::floor<std::chrono::milliseconds>(m_needs.now().time_since_epoch());
    const QDate today = QDateTime::fromMSecsSinceEpoch(now.count()).date();
    return QLocale().toString(local, local.date() == today ? u"HH:mm"_s : u"dd/MM HH:mm"_s);
}

void HistoryState::copyToClipboard(const TranslationItem& item) {
    m_needs.pasteboard.setString(item.translatedText);
    copiedId = item.id;
    m_needs.clock.after(copyFeedback, this, [this, id = item.id] {
        if (copiedId() == id)
            copiedId = std::nullopt;
    });
}

void HistoryState::remove(const TranslationItem& item) {
    offerUndo(u"Đã xóa một bản dịch"_s);
    m_needs.historyStore.remove(item.id);
}

void HistoryState::clear() {
    offerUndo(u"Đã xóa %1 bản dịch"_s.arg(m_needs.historyStore.items().size()));
    m_needs.historyStore.clear();
}

void HistoryState::offerUndo(const QString& message) {
    // The panel may be gone by the time that the user thinks better of it.
    TranslationHistoryStore& store = m_needs.historyStore;
    m_needs.undo.make(message, [&store, before = store.items()] { store.bringBack(before); });
}

void HistoryState::undo() {
    m_needs.undo.accept();
}

void HistoryState::select(const TranslationItem& item) {
    m_onSelect(item);
}

}  // namespace tralio
