#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace tralio {

/// The languages that one of the daemon's engines has voices for, as the engine writes them.
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

/// The voice for the most wanted of the tags that any engine has, from the first engine that has it. The
/// closest language counts: the tag's own, then the language without a region, then any region of it.
[[nodiscard]] std::optional<SpeechVoice> chooseVoice(
    const QStringList& tags, const std::vector<SpeechModule>& modules);

/// The text as SSML with marks after the first word of every sentence, and within very long ones. The daemon
/// tells when it passes a mark, which is the only sign of life that it gives in the midst of a text.
[[nodiscard]] QString withMarks(const QString& text);

/// Whether the first mark or the end comes within a moment of reading.
[[nodiscard]] bool tellsItsFirstWord(const QString& text);

}  // namespace tralio
