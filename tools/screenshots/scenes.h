#pragma once

#include <QColor>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace tralio {

class Stage;

/// A state of the program to take a picture of, and how a user gets there.
struct Scene {
    QString name;
    std::function<void(Stage&)> play;
    std::optional<QColor> accent = {};  ///< replaces the accent of the command line
};

[[nodiscard]] const QList<Scene>& scenes();

/// Every widget of the kit in every state, without layouts, at the places of the drawn components.
[[nodiscard]] QWidget* componentsPage();

}  // namespace tralio
