#pragma once

#include <memory>
#include <xcb/xcb_keysyms.h>

namespace tralio {

struct FreeKeySymbols {
    void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
};

/// The server's keyboard layout at the time of construction.
using KeySymbols = std::unique_ptr<xcb_key_symbols_t, FreeKeySymbols>;

}  // namespace tralio
