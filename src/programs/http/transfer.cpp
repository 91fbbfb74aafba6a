#include "programs/http/transfer.h"

#include <algorithm>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <utility>

#include "engine/transport_error.h"
#include "programs/http/redirections.h"

namespace tralio {

using namespace Qt::StringLiterals;
using namespace http_protocol;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype mostHeaderBytes = 128 * 1024;
constexpr auto proxyAnswer = 10s;  // a script that decides is fetched first
constexpr auto sendingLook = 25ms;
constexpr int switchingProtocols = 101;

/// CURLE_TOO_LARGE, which libcurl has from 8.6 on.
constexpr auto tooLarge = static_cast<CURLcode>(100);

CURLcode trustSystem(CURL* /*easy*/, void* context, void* /*data*/) {
    const int done = SSL_CTX_set_default_verify_paths(static_cast<SSL_CTX*>(context));
    return done == 1 ? CURLE_OK : CURLE_SSL_CACERT_BADFILE;
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
    m_movement = {};
    const QString refusal = whyNotToGoTo(m_request.url, m_origin);
    if (!refusal.isEmpty())
        fail(refusal);
    return refusal.isEmpty();
}

void Transfer::begin(const QByteArray& proxy, CURLSH* share) {
    m_movement = {};
    m_easy.reset(curl_easy_init());
    m_headers.reset();
    m_detail[0] = '\0';
    m_madeBefore = FileDescriptor();
    m_usesProxy = !proxy.isEmpty();
    m_usesHttpProxy = proxy.startsWith("http");
    m_usesSecureProxy = proxy.startsWith("https:");
    m_headerBytes = 0;
    m_hasStatusLine = m_isHeadWhole = m_hasSwitched = false;
    m_location.clear();
    m_isEncoded = false;
    m_response = {};

    CURL* easy = m_easy.get();
    curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
    // A name and a password in it would go along as a header that nobody has asked for.
    curl_easy_setopt(easy, CURLOPT_URL, m_request.url.toEncoded(QUrl::RemoveUserInfo).constData());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_PROXY, proxy.constData());  // none, when empty: the environment has no say
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(easy, CURLOPT_NOPROXY, "");
    curl_easy_setopt(easy, CURLOPT_SHARE, share);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);  // who cancels does not wait for a name server
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
    curl_easy_setopt(easy, CURLOPT_SOCKOPTFUNCTION, &Transfer::configureSocket);
    curl_easy_setopt(easy, CURLOPT_SOCKOPTDATA, this);
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

bool Transfer::takeHeader(const QByteArray& line) {
    m_headerBytes += line.size();
    if (m_headerBytes > mostHeaderBytes)
        return stop(tooLargeHeadersWords(m_request.url));
    if (line.trimmed().isEmpty()) {
        m_isHeadWhole = status() >= 200;
        // Nobody has asked for another protocol, and what follows is none that we know.
        m_hasSwitched = status() == switchingProtocols;
        return !m_hasSwitched;
    }
    if (line.startsWith("HTTP/")) {  // of an interim answer, or of the last one
        m_hasStatusLine = true;
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
    if (!m_inPieces || isRedirected()) {
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

bool Transfer::isSilent(Time now) {
    if (now < deadline())
        return false;
    if (!handle())
        fail(unknownProxyWords());
    else if (m_usesProxy && isProxysPart())
        fail(silentProxyWords());
    else
        fail(TransportError::timedOut(m_request.url, m_idleTimeout).errorDescription());
    return true;
}

Transfer::Time Transfer::deadline() {
    const auto limit =
        handle() ? m_idleTimeout : std::min<std::chrono::milliseconds>(m_idleTimeout, proxyAnswer);
    return m_movement.last() + limit;
}

Transfer::Time Transfer::nextLook(Time now) {
    const Time limit = deadline();
    return m_movement.isSending() ? std::min(limit, now + sendingLook) : limit;
}

int Transfer::status() const {
    long status = 0;
    curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
    return static_cast<int>(status);
}

bool Transfer::isRedirected() const {
    return isRedirection(status()) && !m_location.isEmpty();
}

bool Transfer::isProxysPart() const {
    const bool isSecure = m_request.url.scheme() == u"https"_s;
    curl_off_t since = 0;
    curl_easy_getinfo(handle(), isSecure ? CURLINFO_APPCONNECT_TIME_T : CURLINFO_CONNECT_TIME_T, &since);
    long tunnelStatus = 0;
    curl_easy_getinfo(handle(), CURLINFO_HTTP_CONNECTCODE, &tunnelStatus);
    return since == 0 && tunnelStatus / 100 != 2;
}

bool Transfer::mayBeProxysAnswer() const {
    return m_usesHttpProxy && (m_request.url.scheme() == u"http"_s || isProxysPart());
}

Transfer::Next Transfer::conclude(CURLcode code) {
    if (!m_stoppedBecause.isNull()) {
        fail(m_stoppedBecause);
        return Next::isOver;
    }
    if (m_hasSwitched) {
        m_send(Done{m_id, {switchingProtocols, {}}});
        return Next::isOver;
    }
    // Bytes came that are no answer in HTTP.
    if ((code == CURLE_UNSUPPORTED_PROTOCOL || code == CURLE_WEIRD_SERVER_REPLY) && !m_hasStatusLine &&
        !mayBeProxysAnswer()) {
        m_send(Done{m_id, {}});
        return Next::isOver;
    }
    // So it calls a line that is too long for it.
    if ((code == CURLE_OUT_OF_MEMORY || code == tooLarge) && !m_isHeadWhole) {
        fail(tooLargeHeadersWords(m_request.url));
        return Next::isOver;
    }
    if ((code == CURLE_OK || code == CURLE_GOT_NOTHING) && m_hasStatusLine && !m_isHeadWhole)
        code = CURLE_RECV_ERROR;  // the connection ended within the head, or after an interim answer
    if (code != CURLE_OK) {
        fail(failureWords(failure(code), m_request.url, m_origin));
        return Next::isOver;
    }
    m_response.status = status();
    if (mayBeProxysAnswer() && m_response.status == 407) {
        fail(proxyLoginWords());
        return Next::isOver;
    }
    if (isRedirected())
        return redirect(m_request.url.resolved(QUrl::fromEncoded(m_location)));
    m_send(Done{m_id, m_response});
    return Next::isOver;
}

Transfer::Next Transfer::redirect(const QUrl& target) {
    const bool takesBody = m_body && (m_response.status == 307 || m_response.status == 308);
    const QString refusal = m_trail.whyNotToFollow(m_request.url, target, takesBody, m_origin);
    if (!refusal.isEmpty()) {
        fail(refusal);
        return Next::isOver;
    }
    m_easy.reset();
    m_request.url = target;
    if (!takesBody)
        m_body.reset();
    return canBegin() ? Next::goesOn : Next::isOver;
}

TransferFailure Transfer::failure(CURLcode code) const {
    TransferFailure failure{
        .code = code, .usesProxy = m_usesProxy, .usesSecureProxy = m_usesSecureProxy, .detail = m_detail};
    curl_easy_getinfo(handle(), CURLINFO_SSL_VERIFYRESULT, &failure.verifyResult);
    curl_easy_getinfo(handle(), CURLINFO_OS_ERRNO, &failure.osError);
    curl_easy_getinfo(handle(), CURLINFO_HTTP_CONNECTCODE, &failure.tunnelStatus);
    failure.isProxysPart = isProxysPart() || mayBeProxysAnswer();
    return failure;
}

void Transfer::fail(const QString& words) {
    m_send(Failed{m_id, words});
}

}  // namespace tralio
