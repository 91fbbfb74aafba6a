#pragma once

#include <QString>

#include <functional>
#include <optional>

#include "common/clock.h"
#include "common/observable_object.h"

namespace tralio {

/// What was deleted last, for as long as it can be brought back: 6 seconds, or until something else is
/// deleted. It is gone from where it was at once; this only knows the way back. Used from the main thread.
class UndoOffer final : public ObservableObject {
    Q_OBJECT

public:
    /// `clock` outlives the offer.
    explicit UndoOffer(Clock& clock) : m_clock(clock) {}

    /// What has happened, in the user's words; absent while nothing can be brought back.
    Observable<std::optional<QString>> message{*this};

    /// `bringBack` is called at most once, and not after this object is gone.
    void make(const QString& what, std::function<void()> bringBack);
    /// Brings it back, if it still can be.
    void accept();

private:
    void withdraw();

    Clock& m_clock;
    std::function<void()> m_bringBack;
    ScheduledCall m_end;
};

}  // namespace tralio
