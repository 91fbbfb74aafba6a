#pragma once

#include <QList>
#include <QString>

namespace tralio {

/// A ready-made endpoint that the user can choose.
///
/// The settings store a preset by its id. The functions below tell what an id means beyond its row in the
/// table; they accept any id that was ever stored.
struct ProviderPreset {
    QString id;
    QString name;
    QString baseURL;  ///< without the endpoint tail, which the translation client appends
    QString defaultModel;
    QString helpText;

    /// All presets in display order. The base URL and model of the first one are the defaults of the whole
    /// program.
    [[nodiscard]] static const QList<ProviderPreset>& presets();

    /// The preset that is selected in a fresh installation.
    [[nodiscard]] static QString defaultId() { return presets().front().id; }
    /// Whether the preset is the maker's own gateway, which comes with the built-in key.
    [[nodiscard]] static bool bringsKey(QStringView id) { return id.startsWith(u"kavo"); }
    /// Whether the preset's server requires a key; one on the user's own machine does not.
    [[nodiscard]] static bool needsKey(QStringView id) { return !id.contains(u"ollama"); }
    /// Whether the preset stands for an endpoint that the user types.
    [[nodiscard]] static bool isCustom(QStringView id) { return id == u"custom"; }

    bool operator==(const ProviderPreset&) const = default;
    friend size_t qHash(const ProviderPreset& preset, size_t seed = 0) {
        return qHashMulti(seed, preset.id, preset.name, preset.baseURL, preset.defaultModel, preset.helpText);
    }
};

}  // namespace tralio
