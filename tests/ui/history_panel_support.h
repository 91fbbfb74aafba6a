#pragma once

#include <memory>

#include "history/translation_history_store.h"
#include "support/event_loop.h"
#include "support/fake_desktop.h"
#include "support/memory_key_value_store.h"
#include "ui/history/history_state.h"
#include "ui/undo/undo_offer.h"

namespace tralio {

/// The history panel in the hands of a test. It is noon of a day in the time zone of the desktop.
class HistoryPanel : public testing::Test {
protected:
    HistoryPanel() {
        panel = std::make_unique<HistoryState>(
            HistoryState::Dependencies{
                history, desktop.pasteboard, undo, desktop.clock, [this] { return at(now); }},
            [this](const TranslationItem& item) { picked += item.sourceText; });
    }

    static std::chrono::system_clock::time_point at(const QDateTime& time) {
        return std::chrono::system_clock::time_point(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
    }

    /// Adds an entry whose translation is the text in capitals.
    const TranslationItem& add(const QString& text) {
        history.add(text, text.toUpper(), QStringLiteral("Tiếng Anh"), QStringLiteral("Tiếng Việt"),
            QStringLiteral("Tự nhiên"));
        return history.items().first();
    }

    QDateTime now{QDate(2026, 11, 25), QTime(12, 0)};
    FakeDesktop desktop;
    MemoryKeyValueStore store;
    TranslationHistoryStore history{store, [this] { return at(now); }};
    UndoOffer undo{desktop.clock};
    QStringList picked;  ///< source texts
    std::unique_ptr<HistoryState> panel;
};

}  // namespace tralio
