#pragma once

#include <QList>
#include <QString>

#include "hotkeys/keys.h"

namespace tralio {

/// One of the shortcuts among which the user picks without pressing it.
struct HotKeyPresetItem {
    QString id;
    QString display;  ///< as the settings keep it, by which a preset is known again
    KeyCombination combination;

    /// For the selected text, and for the screen capture; in display order.
    [[nodiscard]] static const QList<HotKeyPresetItem>& textHotKeyPresets();
    [[nodiscard]] static const QList<HotKeyPresetItem>& ocrHotKeyPresets();

    bool operator==(const HotKeyPresetItem&) const = default;
};

}  // namespace tralio
