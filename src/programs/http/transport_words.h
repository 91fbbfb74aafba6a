#pragma once

#include <chrono>
#include <curl/curl.h>
#include <string>

namespace tralio {

/// Where the address of a request came from, and so whether the user can correct it.
enum class AddressOrigin {
    enteredByUser,  ///< the base URL in the settings
    programsOwn,
};

/// A transfer without a complete reply, as libcurl reports it.
struct TransferFailure {
    CURLcode code = CURLE_OK;
    long verifyResult = 0;  ///< of the server's certificate, an X509_V_ERR number
    long osError = 0;       ///< errno of connecting; 0 if that did not fail
    long tunnelStatus = 0;  ///< the proxy's status for CONNECT; 0 if none was sent
    long proxyError = 0;    ///< the SOCKS proxy's answer, a CURLproxycode
    bool usesProxy = false;
    bool usesSecureProxy = false;  ///< TLS to the proxy itself
    bool isProxysPart = false;     ///< the proxy sent everything that was received, if anything
    std::string detail = {};       ///< libcurl's error text
};

/// The message for the user, in UTF-8: what happened, with which server, and what can be done.
[[nodiscard]] std::string failureWords(
    const TransferFailure& failure, const std::string& server, AddressOrigin origin);

[[nodiscard]] std::string unsupportedSchemeWords(AddressOrigin origin);
[[nodiscard]] std::string missingHostWords(AddressOrigin origin);
[[nodiscard]] std::string refusedRedirectionWords(const std::string& server, AddressOrigin origin);
[[nodiscard]] std::string tooManyRedirectionsWords(const std::string& server, AddressOrigin origin);
[[nodiscard]] std::string tooLargeHeadersWords(const std::string& server);
[[nodiscard]] std::string tooLargeReplyWords(const std::string& server, size_t limitInBytes);
[[nodiscard]] std::string timedOutWords(const std::string& server, std::chrono::milliseconds silence);

inline constexpr auto proxyLoginWords =
    "Máy chủ proxy yêu cầu đăng nhập. Vui lòng kiểm tra lại cài đặt proxy của máy.";
inline constexpr auto silentProxyWords = "Máy chủ proxy không phản hồi. Vui lòng thử lại sau.";
inline constexpr auto unknownProxyWords =
    "Không đọc được cài đặt proxy của máy. Vui lòng kiểm tra lại cài đặt proxy của máy.";

}  // namespace tralio
