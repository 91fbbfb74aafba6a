#pragma once

#include "common/localized_error.h"

namespace tralio {

/// A request that got no complete reply. The description says what happened, with which server, and what the
/// user can do about it.
class TransportError final : public LocalizedError {
public:
    using LocalizedError::LocalizedError;

    [[nodiscard]] static TransportError cancelled() {
        return TransportError(QStringLiteral("Yêu cầu đã bị hủy."));
    }
};

}  // namespace tralio
