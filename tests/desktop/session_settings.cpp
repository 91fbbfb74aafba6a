#include "desktop/session_settings.h"

namespace tralio {

using namespace Qt::StringLiterals;

QString SessionSettings::forSway() const {
    QString lines;
    if (focus == Focus::byClick)
        lines += u"focus_follows_mouse no\n"_s;
    if (!hasFrames)
        lines += u"default_border none\n"_s;
    if (hasBackground)
        lines += u"output * background #D5DBE3 solid_color\n"_s;
    if (scale != 1)
        lines += u"output * scale %1\n"_s.arg(scale);
    return lines;
}

QString SessionSettings::forOpenbox() const {
    return uR"(<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
<focus><followMouse>%1</followMouse><focusDelay>200</focusDelay></focus>
</openbox_config>
)"_s.arg(focus == Focus::followsPointer ? u"yes"_s : u"no"_s);
}

}  // namespace tralio
