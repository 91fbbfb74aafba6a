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

constexpr auto rowFeedback = 1500ms;

}  // namespace

HistoryState::HistoryState(Dependencies needs, OnSelect onSelect)
    : m_needs(std::move(needs)), m_onSelect(std::move(onSelect)) {
    m_needs.historyStore.load();  // the store may have been locked until now
}

QString HistoryState::formatDate(const QDateTime& date) const {
    const QDateTime local = date.toLocalTime();
    const auto now = std::chrono::floor<std::chrono::milliseconds>(m_needs.now().time_since_epoch());
    const QDate today = QDateTime::fromMSecsSinceEpoch(now.count()).date();
    return QLocale().toString(local, local.date() == today ? u"HH:mm"_s : u"dd/MM HH:mm"_s);
}

void HistoryState::copyToClipboard(const TranslationItem& item) {
    m_needs.pasteboard.setString(item.translatedText);
    copiedId = item.id;
    m_needs.clock.after(rowFeedback, this, [this, id = item.id] {
        if (copiedId() == id)
            copiedId = std::nullopt;
    });
}

void HistoryState::remove(const TranslationItem& item) {
    m_needs.historyStore.load();
    offerUndo(1);
    m_needs.historyStore.remove(item.id);
}

void HistoryState::clear() {
    m_needs.historyStore.load();
    offerUndo(m_needs.historyStore.items().size());
    m_needs.historyStore.clear();
}

void HistoryState::offerUndo(qsizetype removed) {
    // Only the undo offer owns the removals: the panel may be gone when the user undoes them.
    auto removals = m_needs.removals.lock();
    if (!removals)
        removals = std::make_shared<HistoryRemovals>();
    m_needs.removals = removals;
    TranslationHistoryStore& store = m_needs.historyStore;
    removals->before.push_back(store.items());
    removals->count += removed;
    m_needs.undo.make(
        removals->count == 1 ? u"Đã xóa một bản dịch"_s : u"Đã xóa %1 bản dịch"_s.arg(removals->count),
        [&store, removals] {
            for (auto items = removals->before.rbegin(); items != removals->before.rend(); ++items)
                store.bringBack(*items);
        });
}

void HistoryState::select(const TranslationItem& item) {
    m_onSelect(item);
}

}  // namespace tralio
