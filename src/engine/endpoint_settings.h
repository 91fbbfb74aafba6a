#pragma once

#include <QString>

namespace tralio {

/// The settings that the translation client needs, as the user typed them: neither trimmed nor checked.
struct EndpointSettings {
    QString baseURL;
    QString selectedPresetId;
    QString apiKey;
    QString model;
    QString customPrompt;

    bool operator==(const EndpointSettings&) const = default;
};

}  // namespace tralio
