#pragma once

#include <QWidget>

#include <functional>

#include "ui/kit/badge.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/surface.h"

namespace tralio {

/// What a permission is for and whether it is granted: a green card, or a red one with a button that requests
/// it.
class PermissionStep final : public QWidget {
    Q_OBJECT

public:
    struct Texts {
        QString title;
        QString description;
        QString button;
    };

    PermissionStep(const Texts& texts, std::function<void()> request, QWidget* parent = nullptr);

    void setGranted(bool granted);

private:
    Surface* m_surface;
    IconView* m_icon;
    Badge* m_badge;
    QWidget* m_request;
};

}  // namespace tralio
