#include "programs/http/transport_words.h"

#include <cerrno>
#include <openssl/x509_vfy.h>

namespace tralio {
namespace {

bool contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

std::string whatToDo(AddressOrigin origin) {
    return origin == AddressOrigin::enteredByUser ? "Vui lòng kiểm tra lại Base URL."
                                                  : "Vui lòng thử lại sau.";
}

std::string certificateWords(
    const std::string& server, const TransferFailure& failure, AddressOrigin origin) {
    // libcurl itself compares the host name, and then sets no OpenSSL error number.
    if (failure.verifyResult == X509_V_ERR_UNSPECIFIED || contains(failure.detail, "subject name"))
        return "Chứng chỉ bảo mật không thuộc về " + server + ". " + whatToDo(origin);
    switch (failure.verifyResult) {
        case X509_V_ERR_CERT_HAS_EXPIRED:
        case X509_V_ERR_CERT_NOT_YET_VALID:
            return "Chứng chỉ bảo mật của " + server +
                " đã hết hạn hoặc chưa có hiệu lực. Vui lòng kiểm tra lại ngày giờ của máy.";
        case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
        case X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN:
            return "Chứng chỉ bảo mật của " + server +
                " là tự ký nên không đáng tin cậy, yêu cầu đã không được gửi đi.";
        default:
            return "Chứng chỉ bảo mật của " + server + " không đáng tin cậy, yêu cầu đã không được gửi đi.";
    }
}

std::string tlsWords(const std::string& server, const std::string& detail, AddressOrigin origin) {
    // OpenSSL's messages for TLS versions that it does not accept; below, the one for an answer that is not
    // TLS.
    for (const char* words : {"unsupported protocol", "protocol version", "no protocols available"})
        if (contains(detail, words))
            return server + " chỉ hỗ trợ phiên bản TLS đã lỗi thời nên kết nối không an toàn. " +
                whatToDo(origin);
    if (contains(detail, "wrong version number"))
        return server + " không dùng kết nối bảo mật (https). " + whatToDo(origin);
    return "Không thể thiết lập kết nối bảo mật (TLS) tới " + server + ". " + whatToDo(origin);
}

/// Whether a SOCKS proxy reports that it could not reach the server.
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

/// The error message if the proxy is to blame, else empty.
std::string proxyWords(const std::string& server, const TransferFailure& failure) {
    if (failure.code == CURLE_COULDNT_RESOLVE_PROXY)
        return "Không tìm thấy máy chủ proxy. Vui lòng kiểm tra lại cài đặt proxy của máy.";
    if (failure.tunnelStatus == 407)
        return proxyLoginWords;
    std::string unfit = "Không thể kết nối qua máy chủ proxy. Vui lòng kiểm tra lại cài đặt proxy của máy.";
    std::string broken = "Máy chủ proxy đã ngắt kết nối. Vui lòng thử lại.";
    if (failure.tunnelStatus == 502 || failure.tunnelStatus == 504 || socksFailed(failure.proxyError))
        return "Máy chủ proxy không kết nối được tới " + server + ". Vui lòng thử lại sau.";
    if (failure.code == CURLE_PROXY || failure.tunnelStatus >= 300)
        return unfit;
    if (!failure.usesProxy || !failure.isProxysPart)
        return {};
    switch (failure.code) {
        case CURLE_COULDNT_CONNECT:
            if (failure.osError == ETIMEDOUT)
                return silentProxyWords;
            if (failure.osError == ECONNRESET)
                return broken;
            if (failure.osError == ENETUNREACH || failure.osError == EHOSTUNREACH)
                return "Không thể kết nối tới máy chủ proxy. Vui lòng kiểm tra kết nối Internet.";
            return "Máy chủ proxy từ chối kết nối. Vui lòng kiểm tra lại cài đặt proxy của máy.";
        case CURLE_GOT_NOTHING:
        case CURLE_RECV_ERROR:
        case CURLE_SEND_ERROR:
            return broken;
        case CURLE_PEER_FAILED_VERIFICATION:
            return failure.usesSecureProxy
                ? "Chứng chỉ bảo mật của máy chủ proxy không đáng tin cậy, yêu cầu đã không được gửi đi."
                : std::string();
        case CURLE_UNSUPPORTED_PROTOCOL:
        case CURLE_WEIRD_SERVER_REPLY:
            return unfit;
        default:
            return {};
    }
}

std::string brokenWords(const std::string& server) {
    return "Kết nối tới " + server + " bị ngắt giữa chừng. Vui lòng thử lại.";
}

std::string connectWords(const std::string& server, long osError, AddressOrigin origin) {
    const bool isOwn = origin == AddressOrigin::programsOwn;
    if (osError == ECONNREFUSED)
        return "Không thể kết nối tới " + server + ": kết nối bị từ chối. " +
            (isOwn ? "Vui lòng thử lại sau."
                   : "Vui lòng kiểm tra lại Base URL và máy chủ có đang chạy không.");
    if (osError == ECONNRESET)
        return brokenWords(server);
    if (osError == ETIMEDOUT)
        return "Kết nối tới " + server + " đã hết thời gian chờ. Vui lòng thử lại sau.";
    return "Không thể kết nối tới " + server + ". Vui lòng kiểm tra kết nối Internet.";
}

}  // namespace

std::string failureWords(const TransferFailure& failure, const std::string& server, AddressOrigin origin) {
    if (std::string words = proxyWords(server, failure); !words.empty())
        return words;
    switch (failure.code) {
        case CURLE_COULDNT_CONNECT:
            return connectWords(server, failure.osError, origin);
        case CURLE_COULDNT_RESOLVE_HOST:
            return "Không tìm thấy máy chủ " + server + ". Vui lòng kiểm tra kết nối Internet" +
                (origin == AddressOrigin::enteredByUser ? " và Base URL" : "") + '.';
        case CURLE_OPERATION_TIMEDOUT:
            return "Kết nối tới " + server + " đã hết thời gian chờ. Vui lòng thử lại sau.";
        case CURLE_GOT_NOTHING:
            return server + " đóng kết nối mà không trả lời. Vui lòng thử lại.";
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
            return server + " trả lời không đúng giao thức HTTP. " + whatToDo(origin);
        case CURLE_BAD_CONTENT_ENCODING:
        // Also an error of a decoder; our own write callback has set `m_stoppedBecause`.
        case CURLE_WRITE_ERROR:
            return "Không giải mã được nội dung phản hồi của " + server + ".";
        case CURLE_URL_MALFORMAT:
            return missingHostWords(origin);
        default:
            return "Kết nối tới " + server + " gặp lỗi không xác định (mã " + std::to_string(failure.code) +
                ").";
    }
}

std::string unsupportedSchemeWords(AddressOrigin origin) {
    return origin == AddressOrigin::enteredByUser
        ? "Base URL phải bắt đầu bằng http:// hoặc https://."
        : "Địa chỉ tải về không bắt đầu bằng http:// hoặc https://.";
}

std::string missingHostWords(AddressOrigin origin) {
    return origin == AddressOrigin::enteredByUser ? "Base URL không có tên máy chủ."
                                                  : "Địa chỉ tải về không có tên máy chủ.";
}

std::string refusedRedirectionWords(const std::string& server, AddressOrigin origin) {
    return origin == AddressOrigin::enteredByUser
        ? server +
            " chuyển hướng sang một địa chỉ khác, nên yêu cầu đã bị dừng để bảo vệ API Key. Vui lòng kiểm "
            "tra lại Base URL."
        : server + " chuyển hướng sang một địa chỉ không an toàn, nên yêu cầu đã bị dừng.";
}

std::string tooManyRedirectionsWords(const std::string& server, AddressOrigin origin) {
    return server + " chuyển hướng quá nhiều lần. " + whatToDo(origin);
}

std::string tooLargeHeadersWords(const std::string& server) {
    return "Phần đầu phản hồi của " + server + " quá lớn, yêu cầu đã bị dừng.";
}

std::string timedOutWords(const std::string& server, std::chrono::milliseconds silence) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(silence).count();
    return server + " không phản hồi trong " + std::to_string(seconds) + " giây. Vui lòng thử lại sau.";
}

std::string tooLargeReplyWords(const std::string& server, size_t limitInBytes) {
    return "Phản hồi của " + server + " quá lớn (hơn " + std::to_string(limitInBytes / (1024 * 1024)) +
        " MB), yêu cầu đã bị dừng.";
}

}  // namespace tralio
