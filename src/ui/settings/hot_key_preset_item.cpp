#include "ui/settings/hot_key_preset_item.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

using enum KeyCode;
using enum Modifier;

}  // namespace

const QList<HotKeyPresetItem>& HotKeyPresetItem::textHotKeyPresets() {
    static const QList<HotKeyPresetItem> presets{
        {u"opt_d"_s, u"⌥ D"_s, {d, option}},
        {u"opt_t"_s, u"⌥ T"_s, {t, option}},
        {u"opt_space"_s, u"⌥ Space"_s, {space, option}},
        {u"cmd_shift_d"_s, u"⌘ ⇧ D"_s, {d, command | shift}},
        {u"ctrl_opt_d"_s, u"⌃ ⌥ D"_s, {d, control | option}},
    };
    return presets;
}

const QList<HotKeyPresetItem>& HotKeyPresetItem::ocrHotKeyPresets() {
    static const QList<HotKeyPresetItem> presets{
        {u"opt_s"_s, u"⌥ S"_s, {s, option}},
        {u"opt_c"_s, u"⌥ C"_s, {c, option}},
        {u"opt_shift_d"_s, u"⌥ ⇧ D"_s, {d, option | shift}},
        {u"cmd_shift_s"_s, u"⌘ ⇧ S"_s, {s, command | shift}},
        {u"ctrl_opt_s"_s, u"⌃ ⌥ S"_s, {s, control | option}},
    };
    return presets;
}

}  // namespace tralio
