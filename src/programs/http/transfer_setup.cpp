// The other half of Transfer: libcurl's options and callbacks.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <utility>

#include "programs/http/transfer.h"

namespace tralio {
namespace {

/// Whether OpenSSL's single file of all certificates must be read, which takes 30 ms per connection: if the
/// user names one (SSL_CERT_FILE), or if the folder has no hashed entries, of which OpenSSL reads only those
/// it needs.
bool wantsFile() {
    static const bool wanted = [] {
        const char* named = std::getenv(X509_get_default_cert_dir_env());
        std::error_code none;
        const std::filesystem::directory_iterator folder(
            named && *named ? named : X509_get_default_cert_dir(), none);
        return std::getenv(X509_get_default_cert_file_env()) ||
            std::none_of(begin(folder), end(folder),
                [](const auto& entry) { return entry.path().extension() == ".0"; });
    }();
    return wanted;
}

}  // namespace

void Transfer::begin(std::vector<std::string> proxies, CURLSH* share) {
    const std::string proxy = proxies.front();
    proxies.erase(proxies.begin());
    m_otherProxies = std::move(proxies);
    m_handshakes = 0;
    m_easy.reset(curl_easy_init());
    m_headers.reset();
    m_detail[0] = '\0';
    m_madeBefore = FileDescriptor();
    m_usesProxy = !proxy.empty();
    m_usesHttpProxy = proxy.starts_with("http");
    m_usesSecureProxy = proxy.starts_with("https:");
    m_headerBytes = 0;
    m_hasStatusLine = m_isHeadWhole = m_hasSwitched = false;
    m_answer.clear();

    CURL* easy = m_easy.get();
    curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
    curl_easy_setopt(easy, CURLOPT_URL, m_address.text.c_str());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_PROXY, proxy.c_str());  // empty: none, whatever the environment says
    curl_easy_setopt(easy, CURLOPT_NOPROXY, "");
    curl_easy_setopt(easy, CURLOPT_SHARE, share);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);  // cancelling must not wait for a name server
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, m_detail);
    curl_easy_setopt(easy, CURLOPT_FRESH_CONNECT, 1L);
    curl_easy_setopt(easy, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy, CURLOPT_CAINFO, nullptr);
    curl_easy_setopt(easy, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(easy, CURLOPT_SSL_CTX_FUNCTION, &Transfer::beginHandshake);
    curl_easy_setopt(easy, CURLOPT_SSL_CTX_DATA, this);
    curl_easy_setopt(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    // Even with "identity" libcurl decodes a body that comes compressed nevertheless.
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, m_inPieces ? "identity" : "");
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "Tralio");
    // libcurl gives the first of several addresses half of this time, and by default minutes. Our limit on
    // silence ends a hopeless attempt earlier.
    const std::chrono::milliseconds connecting = m_head.idleTimeout * 3 / 2;
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(connecting.count()));

    // Sends the body without waiting for 100 Continue.
    curl_slist* headers = curl_slist_append(nullptr, "Expect:");
    for (const auto& [name, value] : m_head.headers) {
        std::string line = name;
        line += value.empty() ? ";" : ": " + value;  // libcurl's notation for a header with an empty value
        headers = curl_slist_append(headers, line.c_str());
    }
    m_headers.reset(headers);
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
    if (m_body) {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, m_body->data());
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(m_body->size()));
    }

    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION,
        static_cast<size_t (*)(char*, size_t, size_t, void*)>(&Transfer::takeHeader));
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION,
        static_cast<size_t (*)(char*, size_t, size_t, void*)>(&Transfer::takeBody));
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &Transfer::openSocket);
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this);
    curl_easy_setopt(easy, CURLOPT_SOCKOPTFUNCTION, &Transfer::configureSocket);
    curl_easy_setopt(easy, CURLOPT_SOCKOPTDATA, this);
}

size_t Transfer::takeHeader(char* line, size_t size, size_t count, void* transfer) {
    return static_cast<Transfer*>(transfer)->takeHeader({line, size * count}) ? size * count : 0;
}

size_t Transfer::takeBody(char* bytes, size_t size, size_t count, void* transfer) {
    return static_cast<Transfer*>(transfer)->takeBody({bytes, size * count}) ? size * count : 0;
}

curl_socket_t Transfer::openSocket(void* transfer, curlsocktype /*purpose*/, curl_sockaddr* address) {
    auto& self = *static_cast<Transfer*>(transfer);
    self.m_isMadeBefore = self.m_madeBefore.isOpen();
    return self.m_isMadeBefore ? self.m_madeBefore.release()
                               : socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

int Transfer::configureSocket(void* transfer, curl_socket_t socket, curlsocktype /*purpose*/) {
    auto& self = *static_cast<Transfer*>(transfer);
    self.m_movement.watch(socket);
    return self.m_isMadeBefore ? CURL_SOCKOPT_ALREADY_CONNECTED : CURL_SOCKOPT_OK;
}

CURLcode Transfer::beginHandshake(CURL* /*easy*/, void* context, void* transfer) {
    ++static_cast<Transfer*>(transfer)->m_handshakes;
    auto* trusted = static_cast<SSL_CTX*>(context);
    const bool isDone = SSL_CTX_set_default_verify_dir(trusted) == 1 &&
        (!wantsFile() || SSL_CTX_set_default_verify_file(trusted) == 1);
    return isDone ? CURLE_OK : CURLE_SSL_CACERT_BADFILE;
}

}  // namespace tralio
