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
    QString sourceLang;  ///< as the translate panel names it
    QString targetLang;
    QString tone;          ///< raw value of the `TranslationTone`
    double timestamp = 0;  ///< seconds since 2001-01-01 00:00:00 UTC, finer than any date type of the toolkit

    /// The time stamp in local time, cut to milliseconds. Invalid for a time too far from ours to be shown.
    [[nodiscard]] QDateTime date() const;

    bool operator==(const TranslationItem&) const = default;
};

/// A point in time as a `TranslationItem` keeps it.
[[nodiscard]] double timestampOf(std::chrono::system_clock::time_point time);

}  // namespace tralio
