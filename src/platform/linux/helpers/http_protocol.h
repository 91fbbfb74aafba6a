#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

/// What the program and its HTTP helper say to each other, in frames. Requests are served side by side; each
/// ends with one `Done` or `Failed`, but for a cancelled one, of which nothing more may come. Texts are
/// UTF-8.
namespace tralio::http_protocol {

/// More than any answer of a model; what exceeds it is a server gone wild, and would fill the memory.
inline constexpr size_t maximumBody = 4 * 1024 * 1024;

inline constexpr size_t maximumRequest = 64 * 1024 * 1024;
inline constexpr size_t maximumReply = maximumBody + 64 * 1024;

using Id = uint32_t;

/// What every request has.
struct Head {
    std::string url;     ///< encoded, its host in ASCII
    std::string server;  ///< how the user is told of it
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
    bool inPieces = false;  ///< or the body comes with `Done`
};
struct Cancel {
    Id id = 0;
};
/// To be answered at once, with `Pong`: by a helper that hangs, not.
struct Ping {};
/// A request to the server of that address will follow soon: the connection may be made already.
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
    std::optional<int> status;  ///< absent when what came back was not HTTP
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

/// The message of a payload, or nothing when it is none.
[[nodiscard]] std::optional<Request> decodeRequest(std::string_view payload);
[[nodiscard]] std::optional<Reply> decodeReply(std::string_view payload);

}  // namespace tralio::http_protocol
