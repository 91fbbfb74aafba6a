#pragma once

#include <QString>

namespace tralio {

[[nodiscard]] bool isCurrency(QChar c);

/// Whether it may stand in a number: a digit, a separator or a blank.
[[nodiscard]] bool isOfFigure(QChar c);

[[nodiscard]] qsizetype digitsIn(const QString& text);

/// Whether it is an amount with the sign of a currency, or that sign.
[[nodiscard]] bool isPrice(const QString& text);

}  // namespace tralio
