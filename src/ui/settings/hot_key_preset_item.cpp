#include "ui/settings/hot_key_preset_item.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr quint32 command = 256;
constexpr quint32 shift = 512;
constexpr quint32 option = 2048;
constexpr quint32 control = 4096;

constexpr quint32 keyS = 1;
constexpr quint32 keyD = 2;
constexpr quint32 keyC = 8;
constexpr quint32 keyT = 17;
constexpr quint32 keySpace = 49;

}  // namespace

const QList<HotKeyPresetItem>& HotKeyPresetItem::textHotKeyPresets() {
    static const QList<HotKeyPresetItem> presets{
        {u"opt_d"_s, u"⌥ D"_s, keyD, option},
        {u"opt_t"_s, u"⌥ T"_s, keyT, option},
        {u"opt_space"_s, u"⌥ Space"_s, keySpace, option},
        {u"cmd_shift_d"_s, u"⌘ ⇧ D"_s, keyD, command | shift},
        {u"ctrl_opt_d"_s, u"⌃ ⌥ D"_s, keyD, control | option},
    };
    return presets;
}

const QList<HotKeyPresetItem>& HotKeyPresetItem::ocrHotKeyPresets() {
    static const QList<HotKeyPresetItem> presets{
        {u"opt_s"_s, u"⌥ S"_s, keyS, option},
        {u"opt_c"_s, u"⌥ C"_s, keyC, option},
        {u"opt_shift_d"_s, u"⌥ ⇧ D"_s, keyD, option | shift},
        {u"cmd_shift_s"_s, u"⌘ ⇧ S"_s, keyS, command | shift},
        {u"ctrl_opt_s"_s, u"⌃ ⌥ S"_s, keyS, control | option},
    };
    return presets;
}

}  // namespace tralio
