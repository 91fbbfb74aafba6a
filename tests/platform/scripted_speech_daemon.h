#pragma once

#include <QLocalServer>
#include <QLocalSocket>

#include "support/testing.h"

namespace tralio {

/// A speech daemon with one engine, whose readings go on until a test ends them.
struct ScriptedDaemon final {
    explicit ScriptedDaemon(const QString& path) {
        m_server.listen(path);
        QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] {
            connection = m_server.nextPendingConnection();
            QObject::connect(connection, &QLocalSocket::readyRead, connection, [this] {
                while (connection->canReadLine())
                    take(connection->readLine().chopped(2));
            });
        });
    }

    void tell(const QByteArray& event, int message) {
        const QByteArray code = event.left(3);
        connection->write(
            code + '-' + QByteArray::number(message) + "\r\n" + code + "-1\r\n" + event + "\r\n");
    }

    [[nodiscard]] bool heard(const QByteArray& command) const { return commands.contains(command); }

    QLocalSocket* connection = nullptr;
    QByteArrayList commands;
    QByteArrayList texts;
    int taken = 0;
    bool isHung = false;
    QHash<QByteArray, QByteArray> answers{{"SPEAK", "230 OK RECEIVING DATA"},
        {"GET LANGUAGE", "251-fr\r\n251 OK GET RETURNED"},
        {"GET OUTPUT_MODULE", "251-engine\r\n251 OK GET RETURNED"},
        {"LIST OUTPUT_MODULES", "250-dummy\r\n250-engine\r\n250 OK MODULE LIST SENT"},
        {"LIST SYNTHESIS_VOICES", "249-Vietnamese\tvi\tnone\r\n249 OK VOICE LIST SENT"}};

private:
    void take(const QByteArray& line) {
        if (m_readsText) {
            if (line == ".") {
                m_readsText = false;
                answer("225-" + QByteArray::number(++taken) + "\r\n225 OK MESSAGE QUEUED");
            } else {
                texts.last() += line + '\n';
            }
            return;
        }
        commands << line;
        if (line == "SPEAK") {
            m_readsText = true;
            texts << QByteArray();
        }
        answer(answers.value(line, "200 OK"));
    }

    void answer(const QByteArray& reply) {
        if (!isHung)
            connection->write(reply + "\r\n");
    }

    QLocalServer m_server;
    bool m_readsText = false;
};

}  // namespace tralio
