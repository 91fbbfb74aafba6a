#include "programs/http/transport_words.h"

#include <cerrno>
#include <openssl/x509_vfy.h>

#include "engine/transport_error.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QString whatToDo(AddressOrigin origin) {
    return origin == AddressOrigin::enteredByUser ? u"Vui lòng kiểm tra lại Base URL."_s
                                                  : u"Vui lòng thử lại sau."_s;
}

QString certificateWords(const QString& server, const TransferFailure& failure, AddressOrigin origin) {
    // libcurl compares the names itself, and leaves no number of OpenSSL's.
    if (failure.verifyResult == X509_V_ERR_UNSPECIFIED || failure.detail.contains("subject name"))
        return u"Chứng chỉ bảo mật không thuộc về %1. %2"_s.arg(server, whatToDo(origin));
    switch (failure.verifyResult) {
        case X509_V_ERR_CERT_HAS_EXPIRED:
        case X509_V_ERR_CERT_NOT_YET_VALID:
            return u"Chứng chỉ bảo mật của %1 đã hết hạn hoặc chưa có hiệu lực. "
                   u"Vui lòng kiểm tra lại ngày giờ của máy."_s.arg(server);
        case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
        case X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN:
            return u"Chứng chỉ bảo mật của %1 là tự ký nên không đáng tin cậy, yêu cầu đã không được gửi đi."_s
                .arg(server);
        default:
            return u"Chứng chỉ bảo mật của %1 không đáng tin cậy, yêu cầu đã không được gửi đi."_s.arg(
                server);
    }
}

QString tlsWords(const QString& server, const QByteArray& detail, AddressOrigin origin) {
    // What OpenSSL calls versions that it does not accept, and an answer that is none of TLS.
    for (const char* words : {"unsupported protocol", "protocol version", "no protocols available"})
        if (detail.contains(words))
            return u"%1 chỉ hỗ trợ phiên bản TLS đã lỗi thời nên kết nối không an toàn. %2"_s.arg(
                server, whatToDo(origin));
    if (detail.contains("wrong version number"))
        return u"%1 không dùng kết nối bảo mật (https). %2"_s.arg(server, whatToDo(origin));
    return u"Không thể thiết lập kết nối bảo mật (TLS) tới %1. %2"_s.arg(server, whatToDo(origin));
}

/// Whether a proxy of SOCKS says that it did not get to the server.
bool socksFailed(long proxyError) {
    switch (proxyError) {
        case CURLPX_REPLY_CONNECTION_REFUSED:
        case CURLPX_REPLY_GENERAL_SERVER_FAILURE:
        case CURLPX_REPLY_HOST_UNREACHABLE:
        case CURLPX_REPLY_NETWORK_UNREACHABLE:
        case CURLPX_REPLY_TTL_EXPIRED:
        case CURLPX_REQUEST_FAILED:
            return true;
        default:
            return false;
    }
}

/// Null where the proxy is not to blame.
QString proxyWords(const QString& server, const TransferFailure& failure) {
    if (failure.code == CURLE_COULDNT_RESOLVE_PROXY)
        return u"Không tìm thấy máy chủ proxy. Vui lòng kiểm tra lại cài đặt proxy của máy."_s;
    if (failure.tunnelStatus == 407)
        return proxyLoginWords();
    QString unfit = u"Không thể kết nối qua máy chủ proxy. Vui lòng kiểm tra lại cài đặt proxy của máy."_s;
    QString broken = u"Máy chủ proxy đã ngắt kết nối. Vui lòng thử lại."_s;
    if (failure.tunnelStatus == 502 || failure.tunnelStatus == 504 || socksFailed(failure.proxyError))
        return u"Máy chủ proxy không kết nối được tới %1. Vui lòng thử lại sau."_s.arg(server);
    if (failure.code == CURLE_PROXY || failure.tunnelStatus >= 300)
        return unfit;
    if (!failure.usesProxy || !failure.isProxysPart)
        return {};
    switch (failure.code) {
        case CURLE_COULDNT_CONNECT:
            if (failure.osError == ETIMEDOUT)
                return silentProxyWords();
            if (failure.osError == ECONNRESET)
                return broken;
            if (failure.osError == ENETUNREACH || failure.osError == EHOSTUNREACH)
                return u"Không thể kết nối tới máy chủ proxy. Vui lòng kiểm tra kết nối Internet."_s;
            return u"Máy chủ proxy từ chối kết nối. Vui lòng kiểm tra lại cài đặt proxy của máy."_s;
        case CURLE_GOT_NOTHING:
        case CURLE_RECV_ERROR:
        case CURLE_SEND_ERROR:
            return broken;
        case CURLE_PEER_FAILED_VERIFICATION:
            return failure.usesSecureProxy
                ? u"Chứng chỉ bảo mật của máy chủ proxy không đáng tin cậy, yêu cầu đã không được gửi đi."_s
                : QString();
        case CURLE_UNSUPPORTED_PROTOCOL:
        case CURLE_WEIRD_SERVER_REPLY:
            return unfit;
        default:
            return {};
    }
}

QString brokenWords(const QString& server) {
    return u"Kết nối tới %1 bị ngắt giữa chừng. Vui lòng thử lại."_s.arg(server);
}

QString connectWords(const QString& server, long osError, AddressOrigin origin) {
    const bool isOwn = origin == AddressOrigin::programsOwn;
    if (osError == ECONNREFUSED)
        return u"Không thể kết nối tới %1: kết nối bị từ chối. %2"_s.arg(server,
            isOwn ? u"Vui lòng thử lại sau."_s
                  : u"Vui lòng kiểm tra lại Base URL và máy chủ có đang chạy không."_s);
    if (osError == ECONNRESET)
        return brokenWords(server);
    if (osError == ETIMEDOUT)
        return u"Kết nối tới %1 đã hết thời gian chờ. Vui lòng thử lại sau."_s.arg(server);
    return u"Không thể kết nối tới %1. Vui lòng kiểm tra kết nối Internet."_s.arg(server);
}

}  // namespace

QString failureWords(const TransferFailure& failure, const QUrl& url, AddressOrigin origin) {
    const QString server = serverName(url);
    if (QString words = proxyWords(server, failure); !words.isNull())
        return words;
    switch (failure.code) {
        case CURLE_COULDNT_CONNECT:
            return connectWords(server, failure.osError, origin);
        case CURLE_COULDNT_RESOLVE_HOST:
            return u"Không tìm thấy máy chủ %1. Vui lòng kiểm tra kết nối Internet%2."_s.arg(
                server, origin == AddressOrigin::enteredByUser ? u" và Base URL"_s : QString());
        case CURLE_OPERATION_TIMEDOUT:
            return u"Kết nối tới %1 đã hết thời gian chờ. Vui lòng thử lại sau."_s.arg(server);
        case CURLE_GOT_NOTHING:
            return u"%1 đóng kết nối mà không trả lời. Vui lòng thử lại."_s.arg(server);
        case CURLE_PARTIAL_FILE:
        case CURLE_RECV_ERROR:
        case CURLE_SEND_ERROR:
            return brokenWords(server);
        case CURLE_PEER_FAILED_VERIFICATION:
            return certificateWords(server, failure, origin);
        case CURLE_SSL_CONNECT_ERROR:
            return tlsWords(server, failure.detail, origin);
        case CURLE_UNSUPPORTED_PROTOCOL:
        case CURLE_WEIRD_SERVER_REPLY:
            return u"%1 trả lời không đúng giao thức HTTP. %2"_s.arg(server, whatToDo(origin));
        case CURLE_BAD_CONTENT_ENCODING:
        case CURLE_WRITE_ERROR:  // also of a decoder; ours tells why by itself
            return u"Không giải mã được nội dung phản hồi của %1."_s.arg(server);
        case CURLE_URL_MALFORMAT:
            return missingHostWords(origin);
        default:
            return u"Kết nối tới %1 gặp lỗi không xác định (mã %2)."_s.arg(
                server, QString::number(failure.code));
    }
}

QString unsupportedSchemeWords(AddressOrigin origin) {
    return origin == AddressOrigin::enteredByUser ? u"Base URL phải bắt đầu bằng http:// hoặc https://."_s
                                                  : TransportError::foreignScheme().errorDescription();
}

QString missingHostWords(AddressOrigin origin) {
    return origin == AddressOrigin::enteredByUser ? u"Base URL không có tên máy chủ."_s
                                                  : u"Địa chỉ tải về không có tên máy chủ."_s;
}

QString refusedRedirectionWords(const QUrl& from, AddressOrigin origin) {
    return origin == AddressOrigin::enteredByUser
        ? u"%1 chuyển hướng sang một địa chỉ khác, nên yêu cầu đã bị dừng để bảo vệ API Key. Vui lòng kiểm tra lại Base URL."_s
              .arg(serverName(from))
        : u"%1 chuyển hướng sang một địa chỉ không an toàn, nên yêu cầu đã bị dừng."_s.arg(serverName(from));
}

QString tooManyRedirectionsWords(const QUrl& from, AddressOrigin origin) {
    return u"%1 chuyển hướng quá nhiều lần. %2"_s.arg(serverName(from), whatToDo(origin));
}

QString proxyLoginWords() {
    return u"Máy chủ proxy yêu cầu đăng nhập. Vui lòng kiểm tra lại cài đặt proxy của máy."_s;
}

QString silentProxyWords() {
    return u"Máy chủ proxy không phản hồi. Vui lòng thử lại sau."_s;
}

QString unknownProxyWords() {
    return u"Không đọc được cài đặt proxy của máy. Vui lòng kiểm tra lại cài đặt proxy của máy."_s;
}

QString tooLargeHeadersWords(const QUrl& url) {
    return u"Phần đầu phản hồi của %1 quá lớn, yêu cầu đã bị dừng."_s.arg(serverName(url));
}

}  // namespace tralio
