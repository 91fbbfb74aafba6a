#pragma once

#include <chrono>
#include <curl/curl.h>
#include <string>

namespace tralio {

/// Where the address of a request came from, and so whether the user is the one to mend it.
enum class AddressOrigin {
    enteredByUser,  ///< the base URL in the settings
    programsOwn,
};

/// A transfer that brought no complete reply, as libcurl tells of it.
struct TransferFailure {
    CURLcode code = CURLE_OK;
    long verifyResult = 0;  ///< of the server's certificate, in OpenSSL's numbers
    long osError = 0;       ///< of the connection, 0 where it was none
    long tunnelStatus = 0;  ///< what a proxy answered to CONNECT, 0 where none was asked
    long proxyError = 0;    ///< what a proxy of SOCKS answered, in libcurl's numbers
    bool usesProxy = false;
    bool usesSecureProxy = false;  ///< TLS to the proxy itself
    bool isProxysPart = false;     ///< all that has come, if anything, came from the proxy
    std::string detail = {};       ///< libcurl's own words
};

/// What the user is told, in UTF-8: what happened, with which server, and what can be done about it.
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
