#pragma once

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "platform/linux/x11/x11_connection.h"
#include "support/testing.h"

namespace tralio {

/// The program on a desktop of its own.
struct OnDesktop : testing::Test {
    VirtualDesktop desktop;
    ProgramRun program{desktop};
};

/// A desktop without a tray, on whose display this process is a client, too.
struct X11 : testing::Test {
    X11() { qputenv("DISPLAY", desktop.environment().value(u"DISPLAY"_s).toUtf8()); }

    /// Whether `program` can grab the keyboard; if so, it keeps the grab until it releases it.
    static bool takesKeyboard(X11Connection& program) {
        const XcbPtr<xcb_grab_keyboard_reply_t> grab{xcb_grab_keyboard_reply(program.xcb(),
            xcb_grab_keyboard(
                program.xcb(), 1, program.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr)};
        return grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
    }

    VirtualDesktop desktop{VirtualDesktop::Tray::absent};
};

}  // namespace tralio
