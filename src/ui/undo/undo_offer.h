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

    enum class Kind { single, ofSeveral };

    /// Replaces the offer. `bringBack` is called at most once, and not after this object is destroyed.
    void make(const QString& what, std::function<void()> bringBack, Kind kind = Kind::single);
    /// If an offer of several stands, it lasts as if it were made now, and leads back to before the first.
    /// Returns whether one does.
    bool extend();
    /// Brings the deleted thing back, if that is still possible.
    void accept();

private:
    void withdraw();

    Clock& m_clock;
    std::function<void()> m_bringBack;
    Kind m_kind = Kind::single;
    ScheduledCall m_end;
};

}  // namespace tralio
