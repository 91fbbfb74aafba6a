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

/// One request, from its first address over its redirections to its end: what libcurl is told of it, and what
/// it tells.
///
/// Each has a connection of its own, which is used once, so that no answer is another request's and nothing
/// is sent twice. WORKAROUND: on a kept one libcurl 7.88 takes what came while it was idle for the next
/// answer, and sends a request again that the server had read.
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

    /// Whether there is an address to go to; if not, the failure has been told.
    [[nodiscard]] bool canBegin();

    /// Makes the handle ready for the address.
    /// @param proxies on the way there, of which the first is taken; an empty one for none
    /// @param share the sessions of TLS that servers may know again
    void begin(std::vector<std::string> proxies, CURLSH* share);
    /// Of a list of proxies one was not reached, and others are left.
    [[nodiscard]] bool hasOtherProxy() const { return !m_otherProxies.empty(); }
    [[nodiscard]] const std::vector<std::string>& otherProxies() const { return m_otherProxies; }
    /// A connection to the server or the proxy that is made already.
    void useConnection(FileDescriptor connection) { m_madeBefore = std::move(connection); }

    /// What becomes of it when the connection has done its part: on to another address, or told.
    enum class Next { goesOn, isOver };
    [[nodiscard]] Next conclude(CURLcode code);

    /// Whether nothing has moved either way for too long; then the failure has been told.
    [[nodiscard]] bool isSilent(Time now);
    /// Whether more has come than any answer takes; then the failure has been told.
    [[nodiscard]] bool isEndless();
    /// When to ask again; that the peer takes what we send wakes nobody.
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
    /// Of the answer itself; empty where there is none.
    [[nodiscard]] std::string header(const char* name) const;
    [[nodiscard]] bool isRedirected() const;
    [[nodiscard]] long tunnelStatus() const;
    /// Whether the server itself has come into play yet, behind the proxy.
    [[nodiscard]] bool isProxysPart() const;
    /// Whether what comes may be of an HTTP proxy's own making: without TLS nothing tells the two apart.
    [[nodiscard]] bool mayBeProxysAnswer() const;
    [[nodiscard]] Next redirect(Address target);
    [[nodiscard]] TransferFailure failure(CURLcode code) const;
    void fail(std::string words);
    /// Ends the connection from within a callback; `conclude` tells the words.
    [[nodiscard]] bool stop(std::string words);

    http_protocol::Id m_id;
    http_protocol::Head m_head;
    Address m_address;
    std::optional<std::string> m_body;
    AddressOrigin m_origin = AddressOrigin::programsOwn;
    bool m_inPieces = false;
    Send m_send;

    // Of the hop that is under way.
    SocketMovement m_movement;  ///< from when its turn came
    FileDescriptor m_madeBefore;
    bool m_isMadeBefore = false;  ///< of the connection that is opened
    std::unique_ptr<CURL, Cleanup> m_easy;
    std::unique_ptr<curl_slist, Cleanup> m_headers;
    char m_detail[CURL_ERROR_SIZE] = {};
    std::vector<std::string> m_otherProxies;
    int m_handshakes = 0;  ///< of TLS that have begun, with a proxy or the server
    bool m_usesProxy = false;
    bool m_usesSecureProxy = false;
    bool m_usesHttpProxy = false;  ///< and not one of SOCKS, which says nothing in HTTP
    size_t m_headerBytes = 0;
    bool m_hasStatusLine = false;
    bool m_isHeadWhole = false;  ///< of the answer itself, not of an interim one
    bool m_hasSwitched = false;  ///< to another protocol, which nobody has asked for
    std::string m_answer;        ///< the body, where it is not passed on in pieces
    std::string m_stoppedBecause;

    RedirectionTrail m_trail;
};

}  // namespace tralio
