#pragma once

#include <QList>
#include <QUrl>

#include <optional>

#include "common/picture.h"

class QMimeData;

namespace tralio {

/// What a drag brings: the file that it names, or the picture that it carries.
struct DroppedItem {
    std::optional<QUrl> fileURL = {};
    Picture picture = {};
};

/// Whether a drag may bring something, as far as can be told while it hovers. A text is no item, nor is what
/// comes along with it, as the picture of a spreadsheet's cells does: the editor takes it.
[[nodiscard]] bool mayBringItems(const QMimeData& content);

/// The files of a drag, or else its picture; a null one when there is nothing in it.
[[nodiscard]] QList<DroppedItem> itemsIn(const QMimeData& content);

}  // namespace tralio
