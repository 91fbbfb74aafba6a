#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

#include "history/translation_item.h"

namespace tralio {

/// The stored form of a history: a compact JSON array of one object per entry, its seven keys the members'
/// names, ids in upper case. A time stamp reads back to the same bits.
///
/// Every text must be well-formed (`wellFormed`) and every time stamp finite.
[[nodiscard]] QByteArray encodeHistory(const QList<TranslationItem>& items);

/// Absent when anything in the data is not as it should be, in any entry. Unknown keys are passed over.
[[nodiscard]] std::optional<QList<TranslationItem>> decodeHistory(const QByteArray& data);

/// `text` with U+FFFD for every surrogate without its other half: JSON, being UTF-8, has no form for those.
[[nodiscard]] QString wellFormed(QString text);

}  // namespace tralio
