#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

#include "history/translation_item.h"

namespace tralio {

/// The stored form of a history: a compact JSON array with one object per entry, whose seven keys are the
/// names of the members; ids are in upper case. A time stamp is read back bit for bit.
///
/// Every text must be well-formed (`wellFormed`) and every time stamp finite.
[[nodiscard]] QByteArray encodeHistory(const QList<TranslationItem>& items);

/// Absent if anything in any entry is invalid. Unknown keys are ignored.
[[nodiscard]] std::optional<QList<TranslationItem>> decodeHistory(const QByteArray& data);

/// `text` with every unpaired surrogate replaced by U+FFFD: JSON, being UTF-8, cannot represent them.
[[nodiscard]] QString wellFormed(QString text);

}  // namespace tralio
