#pragma once

#include <QList>
#include <QString>

namespace tralio {

/// One of the shortcuts among which the user picks without pressing it.
struct HotKeyPresetItem {
    QString id;
    QString display;        ///< as the settings keep it, by which a preset is known again
    quint32 keyCode = 0;    ///< virtual key code
    quint32 modifiers = 0;  ///< hot-key mask

    /// For the selected text, and for the screen capture; in display order.
    [[nodiscard]] static const QList<HotKeyPresetItem>& textHotKeyPresets();
    [[nodiscard]] static const QList<HotKeyPresetItem>& ocrHotKeyPresets();

    bool operator==(const HotKeyPresetItem&) const = default;
};

}  // namespace tralio
