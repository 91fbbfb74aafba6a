#pragma once

#include <QHashFunctions>
#include <QString>

#include <array>
#include <optional>

namespace tralio {

/// A style of translation. Its Vietnamese label is what the user reads, its identity, and the form in which
/// settings and history store it.
class TranslationTone final {
public:
    static const TranslationTone natural;
    static const TranslationTone technical;
    static const TranslationTone formal;
    static const TranslationTone concise;

    /// Every tone, in display order.
    [[nodiscard]] static std::array<TranslationTone, 4> allCases();

    /// The tone with exactly this label, if there is one.
    [[nodiscard]] static std::optional<TranslationTone> fromRawValue(QStringView rawValue);

    /// The natural tone.
    TranslationTone();

    [[nodiscard]] QString rawValue() const { return m_rawValue.toString(); }
    [[nodiscard]] QString id() const { return rawValue(); }

    /// The sentence in the prompt that asks the model for this style.
    [[nodiscard]] QString promptInstruction() const { return m_promptInstruction.toString(); }

    bool operator==(const TranslationTone& other) const { return m_rawValue == other.m_rawValue; }
    friend size_t qHash(const TranslationTone& tone, size_t seed = 0) { return qHash(tone.m_rawValue, seed); }

private:
    constexpr TranslationTone(QStringView rawValue, QStringView promptInstruction)
        : m_rawValue(rawValue), m_promptInstruction(promptInstruction) {}

    QStringView m_rawValue;
    QStringView m_promptInstruction;
};

}  // namespace tralio
