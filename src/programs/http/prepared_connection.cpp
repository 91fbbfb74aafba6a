#include "programs/http/prepared_connection.h"

#include <poll.h>
#include <utility>

namespace tralio {

using namespace std::chrono_literals;

namespace {

constexpr auto lifetime = 10s;
/// The port of a proxy, with libcurl's default where the proxy names none.
int proxyPort(const Address& proxy) {
    return proxy.port != 0 ? proxy.port : proxy.scheme == "https" ? 443 : 1080;
}

bool isQuiet(int socket) {
    pollfd events{socket, POLLIN | POLLRDHUP, 0};
    return poll(&events, 1, 0) == 0;
}

}  // namespace

PreparedConnection::PreparedConnection(CURLM* multi, Address address)
    : m_multi(multi), m_address(std::move(address)), m_end(std::chrono::steady_clock::now() + lifetime) {}

PreparedConnection::~PreparedConnection() {
    conclude(CURLE_ABORTED_BY_CALLBACK);
}

void PreparedConnection::connect(const std::string& proxy) {
    m_proxy = proxy;
    const Address peer = proxy.empty() ? m_address : addressOf(proxy);
    const int port = proxy.empty() ? portOf(peer) : proxyPort(peer);
    // Only the TCP connection is made; TLS and the CONNECT to a proxy come with the request.
    const std::string url = "http://" + peer.host + ':' + std::to_string(port);
    m_easy = curl_easy_init();
    curl_easy_setopt(m_easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(m_easy, CURLOPT_PROXY, "");
    curl_easy_setopt(m_easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(m_easy, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(m_easy, CURLOPT_FRESH_CONNECT, 1L);
    curl_easy_setopt(m_easy, CURLOPT_CONNECT_ONLY, 1L);
    curl_multi_add_handle(m_multi, m_easy);
}

void PreparedConnection::conclude(CURLcode code) {
    if (!m_easy)
        return;
    curl_socket_t socket = CURL_SOCKET_BAD;
    if (code == CURLE_OK)
        curl_easy_getinfo(m_easy, CURLINFO_ACTIVESOCKET, &socket);
    if (socket != CURL_SOCKET_BAD)
        m_connection = FileDescriptor::duplicateOf(socket);
    curl_multi_remove_handle(m_multi, m_easy);
    curl_easy_cleanup(std::exchange(m_easy, nullptr));
}

bool PreparedConnection::isUnderWay(const Address& address, const std::string& proxy) const {
    return m_easy != nullptr && isSameOrigin(address, m_address) && proxy == m_proxy;
}

FileDescriptor PreparedConnection::take(const Address& address, const std::string& proxy) {
    FileDescriptor connection = std::exchange(m_connection, FileDescriptor());
    const bool isFit = isSameOrigin(address, m_address) && proxy == m_proxy && connection.isOpen();
    return isFit && isQuiet(connection.number()) ? std::move(connection) : FileDescriptor();
}

}  // namespace tralio
