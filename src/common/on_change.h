#pragma once

#include <QMetaObject>

#include <memory>
#include <utility>

#include "common/observable_object.h"

namespace tralio {

/// Runs `action` after the value that `read` returns for `object` has changed: once, on the next turn of the
/// event loop, for all changes in between. Stops when `context` is destroyed.
template <typename Read, typename Action>
void onChange(ObservableObject& object, QObject* context, Read read, Action action) {
    struct Watch {
        decltype(read()) last;
        bool scheduled = false;
    };
    auto watch = std::make_shared<Watch>(Watch{read()});
    QObject::connect(&object, &ObservableObject::objectWillChange, context, [=] {
        if (std::exchange(watch->scheduled, true))
            return;
        QMetaObject::invokeMethod(
            context,
            [=] {
                watch->scheduled = false;
                auto now = read();
                if (now == watch->last)
                    return;
                watch->last = std::move(now);
                action();
            },
            Qt::QueuedConnection);
    });
}

/// Runs `refresh` on the next turn of the event loop after any change of `object`, once for all changes of a
/// turn. Stops when `context` is destroyed.
template <typename Refresh>
void onAnyChange(ObservableObject& object, QObject* context, Refresh refresh) {
    auto scheduled = std::make_shared<bool>(false);
    QObject::connect(&object, &ObservableObject::objectWillChange, context, [=] {
        if (std::exchange(*scheduled, true))
            return;
        QMetaObject::invokeMethod(
            context,
            [=] {
                *scheduled = false;
                refresh();
            },
            Qt::QueuedConnection);
    });
}

}  // namespace tralio
