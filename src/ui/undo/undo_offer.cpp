#include "ui/undo/undo_offer.h"

#include <utility>

namespace tralio {
namespace {

using namespace std::chrono_literals;

constexpr auto duration = 6s;

}  // namespace

void UndoOffer::make(const QString& what, std::function<void()> bringBack) {
    m_bringBack = std::move(bringBack);
    message = what;
    m_end = m_clock.after(duration, [this] { withdraw(); });
}

void UndoOffer::makeOrExtend(const QString& what, std::function<void()> bringBack) {
    const bool stands = message() == what;
    make(what, stands ? std::move(m_bringBack) : std::move(bringBack));
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
