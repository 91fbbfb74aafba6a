#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <chrono>

namespace tralio {

/// One past translation.
struct TranslationItem {
    QUuid id;
    QString sourceText;
    QString translatedText;
    QString sourceLang;  ///< as named in the translate panel
    QString targetLang;
    QString tone;          ///< raw value of the `TranslationTone`
    double timestamp = 0;  ///< seconds since 2001-01-01 00:00:00 UTC, more precise than Qt's date types

    /// The time stamp in local time, truncated to milliseconds. Invalid for a time too far away to be shown.
    [[nodiscard]] QDateTime date() const;

    bool operator==(const TranslationItem&) const = default;
};

/// A point in time in the form of `TranslationItem::timestamp`.
[[nodiscard]] double timestampOf(std::chrono::system_clock::time_point time);

}  // namespace tralio
