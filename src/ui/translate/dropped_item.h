#pragma once

#include <QList>
#include <QUrl>

#include <optional>

#include "common/picture.h"

class QMimeData;

namespace tralio {

/// An item of a drag: a file that it names, or a picture that it contains.
struct DroppedItem {
    std::optional<QUrl> fileURL = {};
    Picture picture = {};
};

/// Whether a drag may contain items, as far as can be told while it hovers. Texts do not count, nor what
/// accompanies them, such as the picture of a spreadsheet's cells: the editor takes those.
[[nodiscard]] bool mayBringItems(const QMimeData& content);

/// The files of a drag, or else its picture, which is null if it has no content.
[[nodiscard]] QList<DroppedItem> itemsIn(const QMimeData& content);

}  // namespace tralio
