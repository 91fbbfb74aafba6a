#pragma once

#include <QByteArray>

#include <chrono>
#include <optional>
#include <variant>

#include "engine/http_client.h"

/// What the program and its HTTP helper say to each other, in frames. Requests are served side by side; each
/// ends with one `Done` or `Failed`, but for a cancelled one, of which nothing more may come.
namespace tralio::http_protocol {

inline constexpr qint64 maximumRequest = 64 * 1024 * 1024;
inline constexpr qint64 maximumReply = HttpClient::maximumBodySize + 64 * 1024;

using Id = quint32;

struct Post {
    Id id = 0;
    HttpRequest request;
    std::chrono::milliseconds idleTimeout{};
    QByteArray body;
};
struct Get {
    Id id = 0;
    HttpRequest request;
    std::chrono::milliseconds idleTimeout{};
    bool inPieces = false;  ///< or the body comes with `Done`
};
struct Cancel {
    Id id = 0;
};
/// To be answered at once, with `Pong`: by a helper that hangs, not.
struct Ping {};
/// A request to the server of that address will follow soon: the connection may be made already.
struct Prepare {
    QUrl url;
};
using Request = std::variant<Post, Get, Cancel, Ping, Prepare>;

struct Piece {
    Id id = 0;
    QByteArray bytes;
    std::optional<qint64> totalSize;
};
struct Done {
    Id id = 0;
    HttpResponse response;
};
struct Failed {
    Id id = 0;
    QString description;
};
struct Pong {};
using Reply = std::variant<Piece, Done, Failed, Pong>;

[[nodiscard]] QByteArray encode(const Request& request);
[[nodiscard]] QByteArray encode(const Reply& reply);

/// The message of a payload, or nothing when it is none.
[[nodiscard]] std::optional<Request> decodeRequest(const QByteArray& payload);
[[nodiscard]] std::optional<Reply> decodeReply(const QByteArray& payload);

}  // namespace tralio::http_protocol
