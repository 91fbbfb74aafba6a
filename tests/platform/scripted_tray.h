#pragma once

#include "platform/scripted_bus_object.h"

namespace tralio {

/// A tray that takes its items over the bus, as those of the large desktops do, without a window.
struct ScriptedTray final : ScriptedBusObject {
    explicit ScriptedTray(QDBusConnection bus = toSessionBus())
        : ScriptedBusObject(std::move(bus), m_interface, u"/StatusNotifierWatcher"_s) {}

    void answer(const QDBusMessage& question, bool present) { send(question.createReply(variant(present))); }
    void announceHost() {
        signal(u"/StatusNotifierWatcher"_s, m_interface, u"StatusNotifierHostRegistered"_s, {});
    }

    QString item;          ///< the bus name of the one that has come; empty while there is none
    bool isPrompt = true;  ///< says that it is there when it is asked, and not only when a test does
    QList<QDBusMessage> questions;

private:
    void take(const QDBusMessage& call) override {
        if (call.member() == u"RegisterStatusNotifierItem") {
            item = call.arguments().value(0).toString();
            send(call.createReply());
        } else if (call.member() == u"Get") {
            questions += call;
            if (isPrompt)
                answer(call, true);
        }
    }

    static inline const auto m_interface = u"org.kde.StatusNotifierWatcher"_s;
};

}  // namespace tralio
