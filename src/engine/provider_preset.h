#pragma once

#include <QList>
#include <QString>

namespace tralio {

/// A ready-made endpoint among which the user picks.
///
/// The settings remember a preset by its id, and some ids carry rules: "kavo" is what a fresh installation
/// selects, ids that begin with "kavo" bring the built-in key along, ids that contain "ollama" need no key,
/// and "custom" leaves what the user typed.
struct ProviderPreset {
    QString id;
    QString name;
    QString baseURL;  ///< without the endpoint tail, which the translation client appends
    QString defaultModel;
    QString helpText;

    /// All presets in display order. The first one's base URL and model are the defaults of the whole
    /// program.
    [[nodiscard]] static const QList<ProviderPreset>& presets();

    bool operator==(const ProviderPreset&) const = default;
    friend size_t qHash(const ProviderPreset& preset, size_t seed = 0) {
        return qHashMulti(seed, preset.id, preset.name, preset.baseURL, preset.defaultModel, preset.helpText);
    }
};

}  // namespace tralio
