#pragma once

#include "common/localized_error.h"

namespace tralio {

/// A request that brought no complete reply, described for the user: what happened, with which server, and
/// what can be done about it.
class TransportError final : public LocalizedError {
public:
    using LocalizedError::LocalizedError;

    [[nodiscard]] static TransportError cancelled() {
        return TransportError(QStringLiteral("Yêu cầu đã bị hủy."));
    }
};

}  // namespace tralio
