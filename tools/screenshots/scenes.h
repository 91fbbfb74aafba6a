#pragma once

#include <QColor>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace tralio {

class Stage;

/// A state of the program worth a picture, and how a user comes to it.
struct Scene {
    QString name;
    std::function<void(Stage&)> play;
    std::optional<QColor> accent = {};  ///< in place of the one that was asked for
};

[[nodiscard]] const QList<Scene>& scenes();

/// Every part of the kit in every state, without layouts, where the drawn components stand.
[[nodiscard]] QWidget* componentsPage();

}  // namespace tralio
