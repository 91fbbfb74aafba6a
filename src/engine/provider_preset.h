#pragma once

#include <QList>
#include <QString>

namespace tralio {

/// A ready-made endpoint among which the user picks.
///
/// The settings remember a preset by its id. What an id means beyond its row is asked here, of any id that
/// was ever stored.
struct ProviderPreset {
    QString id;
    QString name;
    QString baseURL;  ///< without the endpoint tail, which the translation client appends
    QString defaultModel;
    QString helpText;

    /// All presets in display order. The first one's base URL and model are the defaults of the whole
    /// program.
    [[nodiscard]] static const QList<ProviderPreset>& presets();

    /// What a fresh installation selects.
    [[nodiscard]] static QString defaultId() { return presets().front().id; }
    /// Whether it is the maker's own gateway, which comes with the built-in key.
    [[nodiscard]] static bool bringsKey(QStringView id) { return id.startsWith(u"kavo"); }
    /// Whether its server asks for a key; one on the user's own machine does not.
    [[nodiscard]] static bool needsKey(QStringView id) { return !id.contains(u"ollama"); }
    /// Whether it stands for what the user has typed.
    [[nodiscard]] static bool isCustom(QStringView id) { return id == u"custom"; }

    bool operator==(const ProviderPreset&) const = default;
    friend size_t qHash(const ProviderPreset& preset, size_t seed = 0) {
        return qHashMulti(seed, preset.id, preset.name, preset.baseURL, preset.defaultModel, preset.helpText);
    }
};

}  // namespace tralio
