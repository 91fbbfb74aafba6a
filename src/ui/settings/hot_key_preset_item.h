#pragma once

#include <QList>
#include <QString>

#include "hotkeys/keys.h"

namespace tralio {

/// A shortcut that the user can choose without pressing it.
struct HotKeyPresetItem {
    QString id;
    QString display;  ///< as stored in the settings, by which a preset is recognised
    KeyCombination combination;

    /// The presets for the selected text, and for the screen capture, in display order.
    [[nodiscard]] static const QList<HotKeyPresetItem>& textHotKeyPresets();
    [[nodiscard]] static const QList<HotKeyPresetItem>& ocrHotKeyPresets();

    bool operator==(const HotKeyPresetItem&) const = default;
};

}  // namespace tralio
