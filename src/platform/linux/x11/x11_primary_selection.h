#pragma once

#include "platform/linux/selection/primary_selection.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {

class X11PrimarySelection final : public PrimarySelection {
public:
    explicit X11PrimarySelection(X11Connection& connection);

    std::optional<QString> textOf(qint32 processId, QDeadlineTimer deadline) override;

private:
    X11Connection& m_connection;
};

}  // namespace tralio
