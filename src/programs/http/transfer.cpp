#include "programs/http/transfer.h"

#include <algorithm>
#include <utility>

#include "programs/http/redirections.h"

namespace tralio {

using namespace http_protocol;
using namespace std::chrono_literals;

namespace {

constexpr size_t mostHeaderBytes = 128 * 1024;
constexpr auto proxyAnswer = 10s;  // longer than it seems to need, since a proxy script is downloaded first
constexpr auto sendingLook = 25ms;
constexpr int switchingProtocols = 101;

/// The value of CURLE_TOO_LARGE, which libcurl has since 8.6.
constexpr auto tooLarge = static_cast<CURLcode>(100);

}  // namespace

Transfer::Transfer(Id id, Head head, Send send)
    : m_id(id), m_head(std::move(head)), m_address(addressOf(m_head.url)), m_send(std::move(send)) {
    m_address.name = m_head.server;
}

Transfer::Transfer(Post post, Send send) : Transfer(post.id, std::move(post.head), std::move(send)) {
    m_body = std::move(post.body);
    m_origin = AddressOrigin::enteredByUser;
}

Transfer::Transfer(Get get, Send send) : Transfer(get.id, std::move(get.head), std::move(send)) {
    m_inPieces = get.inPieces;
}

bool Transfer::canBegin() {
    m_movement = {};
    const std::string refusal = whyNotToGoTo(m_address, m_origin);
    if (!refusal.empty())
        fail(refusal);
    return refusal.empty();
}

bool Transfer::takeHeader(std::string_view line) {
    m_headerBytes += line.size();
    if (m_headerBytes > mostHeaderBytes)
        return stop(tooLargeHeadersWords(m_address.name));
    const bool isEnd = line.find_first_not_of("\r\n") == line.npos;
    // The answer to CONNECT; stop before its body, which may be endless.
    if (m_usesHttpProxy && isProxysPart())
        return !isEnd || tunnelStatus() != 407 || stop(proxyLoginWords);
    if (isEnd) {
        m_isHeadWhole = status() >= 200;
        // No protocol switch was asked for, so what follows cannot be understood.
        m_hasSwitched = status() == switchingProtocols;
        return !m_hasSwitched;
    }
    if (line.starts_with("HTTP/")) {  // an interim answer (1xx) or the final one
        m_hasStatusLine = true;
        m_isHeadWhole = false;
    }
    return true;
}

bool Transfer::takeBody(std::string_view bytes) {
    if (!m_inPieces || isRedirected()) {
        m_answer += bytes;
        return m_answer.size() <= maximumBody || stop(tooLargeReplyWords(m_address.name, maximumBody));
    }
    curl_off_t size = -1;
    curl_easy_getinfo(handle(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &size);
    // The announced length of a compressed body is not the length of the decoded pieces.
    const std::string coding = header("Content-Encoding");
    const bool isSizeKnown = size >= 0 && (coding.empty() || curl_strequal(coding.c_str(), "identity") != 0);
    m_send(Piece{m_id, std::string(bytes), isSizeKnown ? std::optional<int64_t>(size) : std::nullopt});
    return true;
}

bool Transfer::stop(std::string words) {
    m_stoppedBecause = std::move(words);
    return false;
}

bool Transfer::isSilent(Time now) {
    if (now < deadline())
        return false;
    if (!handle())
        fail(unknownProxyWords);
    else if (m_usesProxy && isProxysPart())
        fail(silentProxyWords);
    else
        fail(timedOutWords(m_address.name, m_head.idleTimeout));
    return true;
}

bool Transfer::isEndless() {
    // Chunk extensions and empty blocks of compression never become a part of the body, which has a limit.
    const size_t limit = m_inPieces ? maximumPieces : maximumTransfer;
    (void)m_movement.last();
    if (m_movement.received() <= limit)
        return false;
    fail(tooLargeReplyWords(m_address.name, limit));
    return true;
}

Transfer::Time Transfer::deadline() {
    const auto limit =
        handle() ? m_head.idleTimeout : std::min<std::chrono::milliseconds>(m_head.idleTimeout, proxyAnswer);
    return m_movement.last() + limit;
}

Transfer::Time Transfer::nextLook(Time now) {
    const Time limit = deadline();
    return m_movement.isSending() ? std::min(limit, now + sendingLook) : limit;
}

long Transfer::status() const {
    long status = 0;
    curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
    return status;
}

std::string Transfer::header(const char* name) const {
    curl_header* found = nullptr;
    const CURLHcode code = curl_easy_header(handle(), name, 0, CURLH_HEADER, -1, &found);
    return code == CURLHE_OK ? found->value : std::string();
}

bool Transfer::isRedirected() const {
    return isRedirection(status()) && !header("Location").empty();
}

bool Transfer::isProxysPart() const {
    if (m_address.scheme == "https")
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
    return m_usesHttpProxy && (m_address.scheme == "http" || isProxysPart());
}

Transfer::Next Transfer::conclude(CURLcode code) {
    if (!m_stoppedBecause.empty()) {
        fail(m_stoppedBecause);
        return Next::isOver;
    }
    if (m_hasSwitched) {
        m_send(Done{m_id, switchingProtocols, {}});
        return Next::isOver;
    }
    // The bytes received are no HTTP response.
    if ((code == CURLE_UNSUPPORTED_PROTOCOL || code == CURLE_WEIRD_SERVER_REPLY) && !m_hasStatusLine &&
        !mayBeProxysAnswer()) {
        m_send(Done{m_id, {}, {}});
        return Next::isOver;
    }
    // libcurl's code for a header line that is too long for it.
    if ((code == CURLE_OUT_OF_MEMORY || code == tooLarge) && !m_isHeadWhole) {
        fail(tooLargeHeadersWords(m_address.name));
        return Next::isOver;
    }
    if ((code == CURLE_OK || code == CURLE_GOT_NOTHING) && m_hasStatusLine && !m_isHeadWhole)
        code = CURLE_RECV_ERROR;  // the connection ended within the head, or after an interim answer
    const bool isUnreached = code == CURLE_COULDNT_CONNECT || code == CURLE_COULDNT_RESOLVE_PROXY;
    if (isUnreached && hasOtherProxy()) {
        m_easy.reset();
        m_movement = {};
        return Next::goesOn;  // safe, since nothing has been sent yet
    }
    if (code != CURLE_OK) {
        fail(failureWords(failure(code), m_address.name, m_origin));
        return Next::isOver;
    }
    if (mayBeProxysAnswer() && status() == 407) {
        fail(proxyLoginWords);
        return Next::isOver;
    }
    if (isRedirected())
        return redirect(resolved(m_address, header("Location")));
    m_send(Done{m_id, static_cast<int>(status()), std::move(m_answer)});
    return Next::isOver;
}

Transfer::Next Transfer::redirect(Address target) {
    const bool takesBody = m_body && (status() == 307 || status() == 308);
    const std::string refusal = m_trail.whyNotToFollow(m_address, target, takesBody, m_origin);
    if (!refusal.empty()) {
        fail(refusal);
        return Next::isOver;
    }
    m_easy.reset();
    m_otherProxies.clear();
    m_address = std::move(target);
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

void Transfer::fail(std::string words) {
    m_send(Failed{m_id, std::move(words)});
}

}  // namespace tralio
