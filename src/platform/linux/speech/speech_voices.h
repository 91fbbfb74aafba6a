#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace tralio {

/// The languages for which one of the daemon's engines has voices, in the engine's notation.
struct SpeechModule {
    QString name;
    QStringList languages;

    bool operator==(const SpeechModule&) const = default;
};

struct SpeechVoice {
    QString module;
    QString language;

    bool operator==(const SpeechVoice&) const = default;
};

/// The languages in an engine's list of voices: lines of name, language and variant.
[[nodiscard]] QStringList languagesOf(const QByteArray& voices);

/// The voice for the most wanted tag that any engine has, from the first such engine. Matches in this order:
/// the tag itself, its language without a region, its language with any region.
[[nodiscard]] std::optional<SpeechVoice> chooseVoice(
    const QStringList& tags, const std::vector<SpeechModule>& modules);

/// The text as SSML with marks after the first word of every sentence, and within very long sentences. The
/// daemon reports when a mark has been reached, which is its only sign of life in the middle of a text.
[[nodiscard]] QString withMarks(const QString& text);

/// Whether the first mark, or the end, is reached shortly after reading begins.
[[nodiscard]] bool tellsItsFirstWord(const QString& text);

}  // namespace tralio
