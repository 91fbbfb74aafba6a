#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <utility>

namespace tralio {

/// What the stand-in sends back for one request, and how well it behaves while it does.
struct StandInReply {
    using Header = std::pair<QByteArray, QByteArray>;

    enum class Delivery {
        whole,          ///< as a good server would
        held,           ///< nothing at all, until the test sends it on
        trickled,       ///< the head at once, the body byte by byte as the test says
        endless,        ///< the body is followed by blanks for ever
        withoutStatus,  ///< the body alone, where a status line should be, and the connection closed
    };

    int status = 200;
    QByteArray body;
    QList<Header> headers;
    Delivery delivery = Delivery::whole;

    /// This reply, delivered in another way.
    [[nodiscard]] StandInReply delivered(Delivery how) const;

    /// The status line and the headers.
    [[nodiscard]] QByteArray head() const;

    /// A good reply of a model.
    [[nodiscard]] static StandInReply translation(const QString& text);
    /// The same, compressed.
    [[nodiscard]] static StandInReply gzipped(const QString& text);
    /// An error as providers send it.
    [[nodiscard]] static StandInReply error(int status, const QString& message);
    [[nodiscard]] static StandInReply redirect(int status, const QByteArray& location);
    [[nodiscard]] static StandInReply withBody(int status, const QByteArray& body);
};

}  // namespace tralio
