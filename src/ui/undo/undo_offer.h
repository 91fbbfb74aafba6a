#pragma once

#include <QString>

#include <functional>
#include <optional>

#include "common/clock.h"
#include "common/observable_object.h"

namespace tralio {

/// What was deleted last, while it can be brought back: for 6 seconds, or until something else is deleted.
/// The deletion itself happens at once; this only keeps the way back. Main thread only.
class UndoOffer final : public ObservableObject {
    Q_OBJECT

public:
    /// `clock` outlives the offer.
    explicit UndoOffer(Clock& clock) : m_clock(clock) {}

    /// What was deleted, as a message; absent while nothing can be brought back.
    Observable<std::optional<QString>> message{*this};

    /// Replaces the offer. `bringBack` is called at most once, and not after this object is destroyed.
    void make(const QString& what, std::function<void()> bringBack);
    /// As `make`; but if the same has been said and stands, its way back is kept: it leads to before the
    /// first of several.
    void makeOrExtend(const QString& what, std::function<void()> bringBack);
    /// Brings the deleted thing back, if that is still possible.
    void accept();

private:
    void withdraw();

    Clock& m_clock;
    std::function<void()> m_bringBack;
    ScheduledCall m_end;
};

}  // namespace tralio
