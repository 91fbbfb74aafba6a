#include "history/translation_item.h"

#include <cmath>

namespace tralio {
namespace {

using namespace std::chrono;

constexpr sys_days referenceDay = 2001y / January / 1;
constexpr double referenceSecond = double(duration_cast<seconds>(referenceDay.time_since_epoch()).count());

}  // namespace

QDateTime TranslationItem::date() const {
    // A stored number can be anything; 1e12 s are some 30,000 years, and much larger ones would overflow the
    // conversion.
    constexpr double farAway = 1e12;
    if (std::abs(timestamp) > farAway)
        return {};
    return QDateTime::fromMSecsSinceEpoch(qint64(std::floor((timestamp + referenceSecond) * 1000)));
}

double timestampOf(std::chrono::system_clock::time_point time) {
    return duration<double>(time - referenceDay).count();
}

}  // namespace tralio
