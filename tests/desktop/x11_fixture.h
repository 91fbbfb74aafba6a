#pragma once

#include "desktop/virtual_desktop.h"
#include "platform/linux/x11/x11_connection.h"
#include "support/testing.h"

namespace tralio {

class X11 : public testing::Test {
protected:
    X11() { qputenv("DISPLAY", desktop.environment().value(u"DISPLAY"_s).toUtf8()); }

    /// A key that is held repeats soon and often.
    void repeatsFast() { desktop.run(u"xset"_s, {u"r"_s, u"rate"_s, u"100"_s, u"50"_s}); }

    VirtualDesktop desktop{VirtualDesktop::Tray::absent};
};

}  // namespace tralio
