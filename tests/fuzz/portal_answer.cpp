// What a portal answers, of whatever types, as it comes over a bus; and the names of shortcuts for it, of
// whatever keys are stored.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusServer>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QUrl>

#include "fuzz/fuzz.h"
#include "hotkeys/shortcut_words.h"
#include "platform/linux/portal/portal.h"
#include "platform/linux/portal/portal_shortcut.h"
#include "platform/linux/portal/shortcut_trigger.h"

namespace {

using namespace tralio;
using namespace Qt::StringLiterals;

/// Makes values out of bytes, each behind the number of its type.
class Values final {
public:
    explicit Values(const QByteArray& bytes) : m_rest(bytes) {}

    [[nodiscard]] bool isEmpty() const { return m_rest.isEmpty(); }

    QVariantMap map(int depth = 0) {
        QVariantMap values;
        for (int count = number(1) & 3; count >= 0; --count)
            values.insert(name(), value(depth + 1));
        return values;
    }
    QString text() { return QString::fromUtf8(take(number(1) & 31)).remove(QChar(0)); }
    quint32 number(qsizetype bytes = 4) { return take(bytes).toHex().toUInt(nullptr, 16); }

private:
    QByteArray take(qsizetype size) {
        const QByteArray taken = m_rest.first(std::min(size, m_rest.size()));
        m_rest.remove(0, taken.size());
        return taken;
    }
    QString name() {
        const QString known[] = {u"shortcuts"_s, u"session_handle"_s, u"trigger_description"_s};
        const quint32 which = number(1) & 3;
        return which < std::size(known) ? known[which] : text();
    }
    QVariant value(int depth) {
        switch (depth > 6 ? 0 : number(1) & 7) {
            case 1:
                return number();
            case 2:
                return QVariant::fromValue(QDBusObjectPath(
                    QLatin1String(Portal::path) + u"/session/"_s + QString::number(number(1))));
            case 3:
                return map(depth);
            case 4:
                return QVariant::fromValue(QDBusVariant(value(depth + 1)));
            case 5:
                return QVariant::fromValue(QList<int>{1, 2});
            case 6:
                return QVariant::fromValue(PortalShortcut{text(), map(depth + 1)});
            case 7: {
                QList<PortalShortcut> shortcuts;
                for (quint32 count = number(1) & 3; count > 0; --count)
                    shortcuts.push_back({text(), map(depth + 1)});
                return QVariant::fromValue(shortcuts);
            }
            default:
                return text();
        }
    }

    QByteArray m_rest;
};

/// The program's side of a bus of two, both in this process: reads what comes as the portal's client does.
class Client final : public QDBusVirtualObject {
public:
    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        for (const QVariant& answer : message.arguments()) {
            const auto results = qdbus_cast<QVariantMap>(answer);
            for (const PortalShortcut& shortcut : shortcutsIn(results))
                (void)shortcut.properties.value(u"trigger_description"_s).toString();
            (void)results.value(u"uri"_s).toUrl();
            const QString session = sessionIn(results);
            fuzz::require(session.isEmpty() || session.startsWith(QLatin1String(Portal::path)),
                "sessions are the portal's");
        }
        return connection.send(message.createReply());
    }
};

class BusOfTwo final {
public:
    BusOfTwo() {
        qDBusRegisterMetaType<PortalShortcut>();
        qDBusRegisterMetaType<QList<PortalShortcut>>();
        m_server.setAnonymousAuthenticationAllowed(true);
        QObject::connect(&m_server, &QDBusServer::newConnection, &m_server,
            [this](const QDBusConnection& connection) { m_portal = connection; });
        m_program = QDBusConnection::connectToPeer(m_server.address(), u"program"_s);
        m_program.registerVirtualObject(u"/a"_s, &m_client);
        while (!m_portal.isConnected())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    void bring(const QVariantList& answers) {
        auto message = QDBusMessage::createMethodCall({}, u"/a"_s, u"a.a"_s, u"a"_s);
        message.setArguments(answers);
        const QDBusMessage reply = m_portal.call(message, QDBus::BlockWithGui);
        fuzz::require(reply.type() == QDBusMessage::ReplyMessage, "the answers are sent and read");
    }

private:
    int m_argumentCount = 1;
    char m_name[5] = "fuzz";
    char* m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argumentCount, m_arguments};
    Client m_client;
    QDBusServer m_server;
    QDBusConnection m_portal{u"portal"_s};
    QDBusConnection m_program{u"program"_s};
};

}  // namespace

void tralio::fuzz::readInput(const QByteArray& input) {
    static auto& bus = *new BusOfTwo;  // which libFuzzer would take down in an order of its own
    Values values(input);
    const KeyCombination keys{KeyCode{values.number()}, Modifiers::fromInt(values.number())};
    const auto trigger = shortcutTrigger(keys);
    require(!trigger || !trigger->isEmpty(), "a key has a name, or none");
    (void)readableShortcut(keys);
    QVariantList answers;
    while (answers.size() < 40 && !values.isEmpty())
        answers += values.map();
    bus.bring(answers);
}
