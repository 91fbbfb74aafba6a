#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <curl/curl.h>

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
    QByteArray detail = {};        ///< libcurl's own words
};

/// What the user is told: what happened, with which server, and what can be done about it.
[[nodiscard]] QString failureWords(const TransferFailure& failure, const QUrl& url, AddressOrigin origin);

[[nodiscard]] QString unsupportedSchemeWords(AddressOrigin origin);
[[nodiscard]] QString missingHostWords(AddressOrigin origin);
[[nodiscard]] QString refusedRedirectionWords(const QUrl& from, AddressOrigin origin);
[[nodiscard]] QString tooManyRedirectionsWords(const QUrl& from, AddressOrigin origin);
[[nodiscard]] QString tooLargeHeadersWords(const QUrl& url);
[[nodiscard]] QString proxyLoginWords();
[[nodiscard]] QString silentProxyWords();
[[nodiscard]] QString unknownProxyWords();

}  // namespace tralio
