#pragma once

#include <QString>

#include <optional>

namespace tralio {

class AtspiBus;

/// An application as the accessibility bus knows it.
struct AtspiApplication {
    qint32 processId = 0;
    QString name;
    QString toolkit;      ///< the toolkit it is made with; empty if it does not say
    bool answers = true;  ///< false if it hangs, so that only its last report says that it is active
};

/// The application with the active window according to the accessibility bus: the one that reported it last
/// or, if that no longer holds, one found by searching. Takes up to 150 ms; absent when no application on the
/// bus has an active window.
[[nodiscard]] std::optional<AtspiApplication> activeAtspiApplication(const AtspiBus& bus);

}  // namespace tralio
