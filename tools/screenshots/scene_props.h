#pragma once

#include <QByteArray>
#include <QString>

#include "update/app_update_info.h"

class QWidget;

namespace tralio {

class Stage;

// What the scenes have in common.

extern const QString input;
extern const QString output;
extern const AppUpdateInfo offer;

/// A stored history with dates long past, which look the same on every day.
[[nodiscard]] QByteArray history();

void offerUpdate(Stage& stage);

// User actions other than typing and clicking.

void hover(Stage& stage, QWidget* widget);
/// Drags a file over the input without dropping it.
void dragFileOver(Stage& stage);
/// Scrolls until the section with this heading is as far below the top as the first section is at rest.
void scrollTo(Stage& stage, const QString& label);
void scrollToEnd(Stage& stage);

}  // namespace tralio
