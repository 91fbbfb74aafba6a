#pragma once

#include <chrono>
#include <curl/curl.h>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/helpers/http_protocol.h"
#include "programs/http/address.h"
#include "programs/http/file_descriptor.h"
#include "programs/http/redirections.h"
#include "programs/http/socket_movement.h"
#include "programs/http/transport_words.h"

namespace tralio {

/// One request, with its redirections, from its first address to its end: sets libcurl up and reads its
/// results.
///
/// Each hop uses a new connection once, so that no answer can be another request's and nothing is sent twice.
/// WORKAROUND: on a kept connection libcurl 7.88 takes bytes that came while it was idle for the next answer,
/// and resends a request that the server had read.
class Transfer final {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Send = std::function<void(http_protocol::Reply)>;

    Transfer(http_protocol::Post post, Send send);
    Transfer(http_protocol::Get get, Send send);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    [[nodiscard]] http_protocol::Id id() const { return m_id; }
    [[nodiscard]] const Address& address() const { return m_address; }
    [[nodiscard]] CURL* handle() const { return m_easy.get(); }

    /// Whether the address is usable; if not, the failure has been sent.
    [[nodiscard]] bool canBegin();

    /// Prepares the handle for the address.
    /// @param proxies to be tried in turn; an empty one is a direct connection
    /// @param share TLS sessions, for resumption
    void begin(std::vector<std::string> proxies, CURLSH* share);
    /// Whether there are proxies left to try, if the present one cannot be reached.
    [[nodiscard]] bool hasOtherProxy() const { return !m_otherProxies.empty(); }
    [[nodiscard]] const std::vector<std::string>& otherProxies() const { return m_otherProxies; }
    /// Uses a connection to the server or the proxy that is already open.
    void useConnection(FileDescriptor connection) { m_madeBefore = std::move(connection); }

    /// What to do after libcurl is done with a hop: begin the next one, or nothing, since the result has been
    /// sent.
    enum class Next { goesOn, isOver };
    [[nodiscard]] Next conclude(CURLcode code);

    /// Whether no byte has moved either way for too long; then the failure has been sent.
    [[nodiscard]] bool isSilent(Time now);
    /// Whether more has been received than any answer takes; then the failure has been sent.
    [[nodiscard]] bool isEndless();
    /// When to call `isSilent` again: early while sending, since acknowledged bytes cause no event.
    [[nodiscard]] Time nextLook(Time now);

private:
    struct Cleanup {
        void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    Transfer(http_protocol::Id id, http_protocol::Head head, Send send);

    static size_t takeHeader(char* line, size_t size, size_t count, void* transfer);
    static size_t takeBody(char* bytes, size_t size, size_t count, void* transfer);
    static curl_socket_t openSocket(void* transfer, curlsocktype purpose, curl_sockaddr* address);
    static CURLcode beginHandshake(CURL* easy, void* context, void* transfer);
    static int configureSocket(void* transfer, curl_socket_t socket, curlsocktype purpose);

    [[nodiscard]] Time deadline();
    [[nodiscard]] bool takeHeader(std::string_view line);
    [[nodiscard]] bool takeBody(std::string_view bytes);
    [[nodiscard]] long status() const;
    /// A header of the final answer; empty if there is none.
    [[nodiscard]] std::string header(const char* name) const;
    [[nodiscard]] bool isRedirected() const;
    [[nodiscard]] long tunnelStatus() const;
    /// Whether the exchange has not got past the proxy to the server yet.
    [[nodiscard]] bool isProxysPart() const;
    /// Whether the answer may come from the HTTP proxy itself: without TLS that cannot be told.
    [[nodiscard]] bool mayBeProxysAnswer() const;
    [[nodiscard]] Next redirect(Address target);
    [[nodiscard]] TransferFailure failure(CURLcode code) const;
    void fail(std::string words);
    /// Aborts the connection from within a callback; `conclude` sends the message.
    [[nodiscard]] bool stop(std::string words);

    http_protocol::Id m_id;
    http_protocol::Head m_head;
    Address m_address;
    std::optional<std::string> m_body;
    AddressOrigin m_origin = AddressOrigin::programsOwn;
    bool m_inPieces = false;
    Send m_send;

    SocketMovement m_movement;  ///< since its turn came
    FileDescriptor m_madeBefore;
    bool m_isMadeBefore = false;  ///< whether the socket being opened is `m_madeBefore`
    std::unique_ptr<CURL, Cleanup> m_easy;
    std::unique_ptr<curl_slist, Cleanup> m_headers;
    char m_detail[CURL_ERROR_SIZE] = {};
    std::vector<std::string> m_otherProxies;
    int m_handshakes = 0;  ///< number of TLS handshakes begun, with a proxy or the server
    bool m_usesProxy = false;
    bool m_usesSecureProxy = false;
    bool m_usesHttpProxy = false;  ///< not SOCKS, which sends no HTTP answers
    size_t m_headerBytes = 0;
    bool m_hasStatusLine = false;
    bool m_isHeadWhole = false;  ///< the head of the final answer, not of an interim one
    bool m_hasSwitched = false;  ///< the server switched protocols, which was not asked for
    std::string m_answer;        ///< the body, unless it is passed on in pieces
    std::string m_stoppedBecause;

    RedirectionTrail m_trail;
};

}  // namespace tralio
