#include "ui/undo/undo_offer.h"

#include <utility>

namespace tralio {
namespace {

using namespace std::chrono_literals;

constexpr auto duration = 6s;

}  // namespace

void UndoOffer::make(const QString& what, std::function<void()> bringBack, Kind kind) {
    m_bringBack = std::move(bringBack);
    m_kind = kind;
    message = what;
    m_end = m_clock.after(duration, [this] { withdraw(); });
}

bool UndoOffer::extend() {
    if (!m_bringBack || m_kind == Kind::single)
        return false;
    m_end = m_clock.after(duration, [this] { withdraw(); });
    return true;
}

void UndoOffer::accept() {
    const auto bringBack = std::exchange(m_bringBack, nullptr);
    m_end.takeBack();
    if (!bringBack)
        return;
    bringBack();
    withdraw();
}

void UndoOffer::withdraw() {
    m_bringBack = nullptr;
    message = std::nullopt;
}

}  // namespace tralio
