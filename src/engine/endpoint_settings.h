#pragma once

#include <QString>

namespace tralio {

/// What the translation client needs to know of the user's settings, as the user typed it: nothing is trimmed
/// or checked.
struct EndpointSettings {
    QString baseURL;
    QString selectedPresetId;
    QString apiKey;
    QString model;
    QString customPrompt;

    bool operator==(const EndpointSettings&) const = default;
};

}  // namespace tralio
