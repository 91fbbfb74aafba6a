#pragma once

#include <QtGlobal>

namespace tralio {

/// Applies changed hot keys; the settings call it when the user changes one.
class HotKeyRegistrar {
public:
    HotKeyRegistrar() = default;
    HotKeyRegistrar(const HotKeyRegistrar&) = delete;
    HotKeyRegistrar& operator=(const HotKeyRegistrar&) = delete;
    virtual ~HotKeyRegistrar() = default;

    /// Virtual key code and modifier mask are explained in `HotKeyService`.
    virtual void updateTextHotKey(quint32 keyCode, quint32 modifiers) = 0;
    virtual void updateOCRHotKey(quint32 keyCode, quint32 modifiers) = 0;
};

}  // namespace tralio
