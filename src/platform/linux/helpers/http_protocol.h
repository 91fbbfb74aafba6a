#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

/// The messages between the program and its HTTP helper. Requests are served in parallel; each ends with one
/// `Done` or `Failed`, except that after a `Cancel` there may be no reply. Texts are UTF-8.
namespace tralio::http_protocol {

/// In bytes. No answer of a model is larger; beyond this the server has gone wrong, and would fill the
/// memory.
inline constexpr size_t maximumBody = 4 * 1024 * 1024;

/// In bytes as they come, with everything around the body.
inline constexpr size_t maximumTransfer = 4 * maximumBody;
/// The same for a body in pieces, above the limit of whoever takes those.
inline constexpr size_t maximumPieces = 600'000'000;

inline constexpr size_t maximumRequest = 64 * 1024 * 1024;
inline constexpr size_t maximumReply = maximumBody + 64 * 1024;

using Id = uint32_t;

/// What all requests have.
struct Head {
    std::string url;     ///< encoded, its host in ASCII
    std::string server;  ///< the name that error messages show
    std::vector<std::pair<std::string, std::string>> headers = {};
    std::chrono::milliseconds idleTimeout{};
};

struct Post {
    Id id = 0;
    Head head;
    std::string body;
};
struct Get {
    Id id = 0;
    Head head;
    bool inPieces = false;  ///< otherwise the whole body comes with `Done`
};
struct Cancel {
    Id id = 0;
};
/// Answered at once with `Pong`, unless the helper hangs.
struct Ping {};
/// A request to the server of that address will follow soon, so the connection may be prepared.
struct Prepare {
    std::string url;
};
using Request = std::variant<Post, Get, Cancel, Ping, Prepare>;

struct Piece {
    Id id = 0;
    std::string bytes;
    std::optional<int64_t> totalSize;
};
struct Done {
    Id id = 0;
    std::optional<int> status;  ///< absent if the reply was not HTTP
    std::string body;
};
struct Failed {
    Id id = 0;
    std::string description;
};
struct Pong {};
using Reply = std::variant<Piece, Done, Failed, Pong>;

[[nodiscard]] std::string encode(Request request);
[[nodiscard]] std::string encode(Reply reply);

/// The message in a payload; nothing if the payload is invalid.
[[nodiscard]] std::optional<Request> decodeRequest(std::string_view payload);
[[nodiscard]] std::optional<Reply> decodeReply(std::string_view payload);

}  // namespace tralio::http_protocol
