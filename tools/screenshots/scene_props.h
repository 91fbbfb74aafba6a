#pragma once

#include <QByteArray>
#include <QString>

#include "update/app_update_info.h"

class QWidget;

namespace tralio {

class Stage;

// What the scenes are played with.

extern const QString input;
extern const QString output;
extern const AppUpdateInfo offer;

/// The store's history, with times long past, which look the same on every day.
[[nodiscard]] QByteArray history();

void offerUpdate(Stage& stage);

// What the user does beside typing and clicking.

void hover(Stage& stage, QWidget* widget);
/// Holds a file over the input.
void dragFileOver(Stage& stage);
/// Scrolls until the section with this heading stands as far below the top as the first one does.
void scrollTo(Stage& stage, const QString& label);
void scrollToEnd(Stage& stage);

}  // namespace tralio
