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

/// What was removed from the history since the undo offer appeared; one undo brings all of it back.
struct HistoryRemovals {
    std::vector<QList<TranslationItem>> before;  ///< the whole history before each removal
    qsizetype count = 0;
};

/// The state of the history panel. The entries are the store's; only the "copied" mark is its own. Lives
/// while the panel is shown. Main thread only.
class HistoryState final : public ObservableObject {
    Q_OBJECT

public:
    /// What the panel uses. All of it outlives the panel.
    struct Dependencies {
        TranslationHistoryStore& historyStore;
        Pasteboard& pasteboard;
        UndoOffer& undo;
        std::weak_ptr<HistoryRemovals>& removals;  ///< owned by the undo offer, shared by successive panels
        Clock& clock;
        TranslationHistoryStore::Now now = std::chrono::system_clock::now;
    };
    using OnSelect = std::function<void(const TranslationItem&)>;

    HistoryState(Dependencies needs, OnSelect onSelect);

    // State

    Observable<std::optional<QUuid>> copiedId{*this};

    [[nodiscard]] TranslationHistoryStore& historyStore() { return m_needs.historyStore; }
    /// The time of an entry as shown in the list, in the user's locale and time zone; without the date if
    /// that is today.
    [[nodiscard]] QString formatDate(const QDateTime& date) const;

    // Actions

    /// Copies the translation to the clipboard, and marks its entry as copied for 1.5 seconds.
    void copyToClipboard(const TranslationItem& item);
    // Removals can be undone for a while.
    void remove(const TranslationItem& item);
    void clear();
    void select(const TranslationItem& item);

private:
    void offerUndo(qsizetype removed);

    Dependencies m_needs;
    OnSelect m_onSelect;
};

}  // namespace tralio
