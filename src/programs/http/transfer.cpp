#include "programs/http/transfer.h"

#include <algorithm>
#include <fcntl.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "engine/transport_error.h"
#include "programs/http/redirections.h"

namespace tralio {

using namespace Qt::StringLiterals;
using namespace http_protocol;

namespace {

constexpr int mostRedirections = 50;
constexpr qsizetype mostHeaderBytes = 128 * 1024;

CURLcode trustSystem(CURL* /*easy*/, void* context, void* /*data*/) {
    const int done = SSL_CTX_set_default_verify_paths(static_cast<SSL_CTX*>(context));
    return done == 1 ? CURLE_OK : CURLE_SSL_CACERT_BADFILE;
}

bool isRedirection(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

}  // namespace

Transfer::Transfer(Id id, HttpRequest request, std::chrono::milliseconds idleTimeout, Send send)
    : m_id(id), m_request(std::move(request)), m_idleTimeout(idleTimeout), m_send(std::move(send)) {}

Transfer::Transfer(const Post& post, Send send)
    : Transfer(post.id, post.request, post.idleTimeout, std::move(send)) {
    m_body = post.body;
    m_origin = AddressOrigin::enteredByUser;
}

Transfer::Transfer(const Get& get, Send send)
    : Transfer(get.id, get.request, get.idleTimeout, std::move(send)) {
    m_inPieces = get.inPieces;
}

bool Transfer::canBegin() {
    const QString scheme = m_request.url.scheme();
    if (scheme != u"http"_s && scheme != u"https"_s)
        fail(unsupportedSchemeWords(m_origin));
    else if (m_request.url.host().isEmpty())
        fail(missingHostWords(m_origin));
    else
        return true;
    return false;
}

void Transfer::begin(const QByteArray& proxy) {
    m_easy.reset(curl_easy_init());
    m_headers.reset();
    m_sockets.clear();
    m_detail[0] = '\0';
    m_usesProxy = !proxy.isEmpty();
    m_headerBytes = 0;
    m_isHeadWhole = false;
    m_location.clear();
    m_isEncoded = false;
    m_response = {};
    m_moved = 0;

    CURL* easy = m_easy.get();
    curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
    curl_easy_setopt(easy, CURLOPT_URL, m_request.url.toEncoded().constData());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_PROXY, proxy.constData());  // none, when empty: the environment has no say
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, m_detail);
    curl_easy_setopt(easy, CURLOPT_FRESH_CONNECT, 1L);
    curl_easy_setopt(easy, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    // The system's certificates one by one, as they are needed, and not all of them for each connection; and
    // those that SSL_CERT_FILE names, as everywhere.
    curl_easy_setopt(easy, CURLOPT_CAINFO, nullptr);
    curl_easy_setopt(easy, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(easy, CURLOPT_SSL_CTX_FUNCTION, &trustSystem);
    curl_easy_setopt(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    // Decoded if it comes compressed in spite of "identity", too.
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, m_inPieces ? "identity" : "");
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "Tralio");

    curl_slist* headers = curl_slist_append(nullptr, "Expect:");  // the body goes along at once
    for (const auto& [name, value] : m_request.headers) {
        // libcurl's own form of a header without a value.
        const QByteArray line = value.isEmpty() ? name + ';' : name + ": " + value;
        headers = curl_slist_append(headers, line.constData());
    }
    m_headers.reset(headers);
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
    if (m_body) {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, m_body->constData());
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
}

size_t Transfer::takeHeader(char* line, size_t size, size_t count, void* transfer) {
    const QByteArray bytes(line, static_cast<qsizetype>(size * count));
    return static_cast<Transfer*>(transfer)->takeHeader(bytes) ? size * count : 0;
}

size_t Transfer::takeBody(char* bytes, size_t size, size_t count, void* transfer) {
    const QByteArray piece(bytes, static_cast<qsizetype>(size * count));
    return static_cast<Transfer*>(transfer)->takeBody(piece) ? size * count : 0;
}

curl_socket_t Transfer::openSocket(void* transfer, curlsocktype /*purpose*/, curl_sockaddr* address) {
    const curl_socket_t opened = socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
    if (opened >= 0)
        static_cast<Transfer*>(transfer)->m_sockets.emplace_back(fcntl(opened, F_DUPFD_CLOEXEC, 3));
    return opened;
}

Transfer::Socket::~Socket() {
    if (m_descriptor >= 0)
        close(m_descriptor);
}

bool Transfer::takeHeader(const QByteArray& line) {
    m_headerBytes += line.size();
    if (m_headerBytes > mostHeaderBytes)
        return stop(tooLargeHeadersWords(m_request.url));
    if (line.trimmed().isEmpty())
        m_isHeadWhole = true;
    if (line.startsWith("HTTP/")) {  // of an interim answer, or of the last one
        m_isHeadWhole = false;
        m_location.clear();
        m_isEncoded = false;
    }
    const qsizetype colon = line.indexOf(':');
    const QByteArray name = line.first(std::max<qsizetype>(0, colon)).trimmed().toLower();
    const QByteArray value = line.sliced(colon + 1).trimmed();
    if (name == "location")
        m_location = value;
    else if (name == "content-encoding")
        m_isEncoded = value.toLower() != "identity";
    return true;
}

bool Transfer::takeBody(const QByteArray& bytes) {
    const bool isForReceiver = m_inPieces && !(isRedirection(status().value_or(0)) && !m_location.isEmpty());
    if (!isForReceiver) {
        m_response.body += bytes;
        return m_response.body.size() <= HttpClient::maximumBodySize ||
            stop(
                TransportError::replyTooLarge(m_request.url, HttpClient::maximumBodySize).errorDescription());
    }
    curl_off_t size = -1;
    curl_easy_getinfo(handle(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &size);
    m_send(Piece{m_id, bytes, size >= 0 && !m_isEncoded ? std::optional<qint64>(size) : std::nullopt});
    return true;
}

bool Transfer::stop(const QString& words) {
    m_stoppedBecause = words;
    return false;
}

void Transfer::followMovement(Time now) {
    quint64 moved = 0;
    auto quiet = std::chrono::milliseconds::max();
    for (const Socket& socket : m_sockets) {
        tcp_info info{};
        socklen_t size = sizeof(info);
        if (getsockopt(socket.descriptor(), IPPROTO_TCP, TCP_INFO, &info, &size) != 0)
            continue;
        moved += info.tcpi_bytes_received + info.tcpi_bytes_acked;
        quiet = std::min({quiet, std::chrono::milliseconds(info.tcpi_last_data_recv),
            std::chrono::milliseconds(info.tcpi_last_ack_recv)});
    }
    // What moved woke nobody of itself: it may have been a while ago.
    if (moved != std::exchange(m_moved, moved))
        m_lastMovement = std::max(m_lastMovement, now - quiet);
}

bool Transfer::isSilent(Time now) {
    followMovement(now);
    if (now < deadline())
        return false;
    fail(TransportError::timedOut(m_request.url, m_idleTimeout).errorDescription());
    return true;
}

std::optional<int> Transfer::status() const {
    long status = 0;
    curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
    // An interim answer that nothing follows is none.
    return status >= 200 ? std::optional(static_cast<int>(status)) : std::nullopt;
}

Transfer::Next Transfer::conclude(CURLcode code) {
    if (!m_stoppedBecause.isNull()) {
        fail(m_stoppedBecause);
        return Next::isOver;
    }
    // Bytes came that are no answer in HTTP.
    if (code == CURLE_UNSUPPORTED_PROTOCOL || code == CURLE_WEIRD_SERVER_REPLY ||
        (code == CURLE_GOT_NOTHING && m_headerBytes > 0)) {
        m_send(Done{m_id, {}});
        return Next::isOver;
    }
    if (code == CURLE_OUT_OF_MEMORY && !m_isHeadWhole) {  // so it calls a line that is too long for it
        fail(tooLargeHeadersWords(m_request.url));
        return Next::isOver;
    }
    if (code == CURLE_OK && !m_isHeadWhole)
        code = CURLE_RECV_ERROR;  // the connection ended within the head
    if (code != CURLE_OK) {
        fail(failureWords(failure(code), m_request.url, m_origin));
        return Next::isOver;
    }
    m_response.status = status();
    if (isRedirection(m_response.status.value_or(0)) && !m_location.isEmpty())
        return redirect(m_request.url.resolved(QUrl::fromEncoded(m_location)));
    m_send(Done{m_id, m_response});
    return Next::isOver;
}

Transfer::Next Transfer::redirect(const QUrl& target) {
    const QString refusal = ++m_redirections > mostRedirections
        ? tooManyRedirectionsWords(m_request.url, m_origin)
        : whyNotToFollow(m_request.url, target, m_origin);
    if (!refusal.isEmpty()) {
        fail(refusal);
        return Next::isOver;
    }
    m_easy.reset();
    m_request.url = target;
    if (m_response.status != 307 && m_response.status != 308)
        m_body.reset();
    return canBegin() ? Next::goesOn : Next::isOver;
}

TransferFailure Transfer::failure(CURLcode code) const {
    TransferFailure failure{.code = code, .usesProxy = m_usesProxy, .detail = m_detail};
    curl_easy_getinfo(handle(), CURLINFO_SSL_VERIFYRESULT, &failure.verifyResult);
    curl_easy_getinfo(handle(), CURLINFO_OS_ERRNO, &failure.osError);
    curl_easy_getinfo(handle(), CURLINFO_HTTP_CONNECTCODE, &failure.tunnelStatus);
    return failure;
}

void Transfer::fail(const QString& words) {
    m_send(Failed{m_id, words});
}

}  // namespace tralio
