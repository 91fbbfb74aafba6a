#pragma once

#include <QList>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "common/observable_object.h"
#include "history/translation_history_store.h"

namespace tralio {

class Clock;
class Pasteboard;
class UndoOffer;

/// What was removed from the history while the way back stood open, which is one way for all of it.
struct HistoryRemovals {
    std::vector<QList<TranslationItem>> before;  ///< all entries before each of them
    qsizetype count = 0;
};

/// The history panel without its widgets: the entries are the store's, and only the mark of a copied one is
/// its own. Lives as long as the panel is shown. Used from the main thread.
class HistoryState final : public ObservableObject {
    Q_OBJECT

public:
    /// What the panel works with. All of it outlives the panel.
    struct Dependencies {
        TranslationHistoryStore& historyStore;
        Pasteboard& pasteboard;
        UndoOffer& undo;
        std::weak_ptr<HistoryRemovals>& removals;  ///< which the offer holds, and panels share
        Clock& clock;
        TranslationHistoryStore::Now now = std::chrono::system_clock::now;
    };
    using OnSelect = std::function<void(const TranslationItem&)>;

    HistoryState(Dependencies needs, OnSelect onSelect);

    // State

    Observable<std::optional<QUuid>> copiedId{*this};

    [[nodiscard]] TranslationHistoryStore& historyStore() { return m_needs.historyStore; }
    /// The time of an entry as the list shows it, in the user's locale and time zone: without the day when
    /// that is today.
    [[nodiscard]] QString formatDate(const QDateTime& date) const;

    // Actions

    /// Puts the translation on the clipboard, and marks its entry for 1.5 seconds.
    void copyToClipboard(const TranslationItem& item);
    // What these remove can be brought back for a while.
    void remove(const TranslationItem& item);
    void clear();
    void select(const TranslationItem& item);

private:
    void offerUndo(qsizetype removed);

    Dependencies m_needs;
    OnSelect m_onSelect;
};

}  // namespace tralio
