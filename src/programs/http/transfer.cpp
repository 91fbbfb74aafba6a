#include "programs/http/transfer.h"

#include <algorithm>
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

}  // namespace

Transfer::Transfer(Id id, HttpRequest request, std::chrono::milliseconds idleTimeout, Send send)
    : m_id(id), m_request(std::move(request)), m_idleTimeout(idleTimeout), m_send(std::move(send)) {}

Transfer::Transfer(const Post& post, Send send)
    : Transfer(post.id, post.request, post.idleTimeout, std::move(send)) {
    m_body = post.body;
    m_request.url.setFragment(QString());
    m_request.url.setUserInfo(QString());  // which goes nowhere, and would make two addresses of one
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

bool Transfer::takeHeader(const QByteArray& line) {
    m_headerBytes += line.size();
    if (m_headerBytes > mostHeaderBytes)
        return stop(tooLargeHeadersWords(m_request.url));
    const bool isEnd = line.trimmed().isEmpty();
    if (m_usesHttpProxy && isProxysPart())  // the answer to CONNECT, whose body may have no end
        return !isEnd || tunnelStatus() != 407 || stop(proxyLoginWords());
    if (isEnd) {
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
    if (m_request.url.scheme() == u"https"_s)
        return m_handshakes < (m_usesSecureProxy ? 2 : 1);
    curl_off_t since = 0;
    curl_easy_getinfo(handle(), CURLINFO_CONNECT_TIME_T, &since);
    return since == 0;
}

long Transfer::tunnelStatus() const {
    long status = 0;
    curl_easy_getinfo(handle(), CURLINFO_HTTP_CONNECTCODE, &status);
    return status;
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
    const bool isUnreached = code == CURLE_COULDNT_CONNECT || code == CURLE_COULDNT_RESOLVE_PROXY;
    if (isUnreached && hasOtherProxy()) {
        m_easy.reset();
        m_movement = {};
        return Next::goesOn;  // nothing was sent yet
    }
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
        return redirect(m_request.url.resolved(QUrl::fromEncoded(m_location))
                            .adjusted(QUrl::RemoveFragment | QUrl::RemoveUserInfo));
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
    m_otherProxies.clear();
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
    curl_easy_getinfo(handle(), CURLINFO_PROXY_ERROR, &failure.proxyError);
    failure.tunnelStatus = tunnelStatus();
    failure.isProxysPart = isProxysPart() || mayBeProxysAnswer();
    return failure;
}

void Transfer::fail(const QString& words) {
    m_send(Failed{m_id, words});
}

}  // namespace tralio
