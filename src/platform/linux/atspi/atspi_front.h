#pragma once

#include <QString>

#include <optional>

namespace tralio {

class AtspiBus;

/// An application as the accessibility bus knows it.
struct AtspiApplication {
    qint32 processId = 0;
    QString name;
    QString toolkit;      ///< what it is made with; empty where it does not say
    bool answers = true;  ///< whether it says so now; it said so last, but hangs, where not
};

/// The application whose window is active, by the accessibility bus: the one that said so last, or else one
/// that is searched. Takes 150 ms at the most; absent when no application on the bus has an active window.
[[nodiscard]] std::optional<AtspiApplication> activeAtspiApplication(const AtspiBus& bus);

}  // namespace tralio
