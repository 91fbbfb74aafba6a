#pragma once

#include <QtGlobal>

namespace tralio {

/// Puts changed hot keys into force; the settings tell it when the user changes one.
class HotKeyRegistrar {
public:
    HotKeyRegistrar() = default;
    HotKeyRegistrar(const HotKeyRegistrar&) = delete;
    HotKeyRegistrar& operator=(const HotKeyRegistrar&) = delete;
    virtual ~HotKeyRegistrar() = default;

    /// Virtual key code and hot-key modifier mask, as `HotKeyService` explains them.
    virtual void updateTextHotKey(quint32 keyCode, quint32 modifiers) = 0;
    virtual void updateOCRHotKey(quint32 keyCode, quint32 modifiers) = 0;
};

}  // namespace tralio
