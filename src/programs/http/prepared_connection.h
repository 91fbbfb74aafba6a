#pragma once

#include <QByteArray>
#include <QUrl>

#include <chrono>
#include <curl/curl.h>

#include "programs/http/file_descriptor.h"

namespace tralio {

/// A connection that is made before there is anything to send over it, within the time that a hot key takes
/// anyway. Nothing has been sent over it, and so nothing that comes can be the answer to anything else.
class PreparedConnection final {
public:
    using Time = std::chrono::steady_clock::time_point;

    PreparedConnection(CURLM* multi, QUrl url);
    PreparedConnection(const PreparedConnection&) = delete;
    PreparedConnection& operator=(const PreparedConnection&) = delete;
    ~PreparedConnection();

    [[nodiscard]] const QUrl& url() const { return m_url; }
    [[nodiscard]] CURL* handle() const { return m_easy; }

    /// Connects, to the proxy if there is one.
    void connect(const QByteArray& proxy);
    /// The connecting has come to its end.
    void conclude(CURLcode code);

    /// Whether it is being made, for a request that goes this way.
    [[nodiscard]] bool isUnderWay(const QUrl& url, const QByteArray& proxy) const;
    /// The connection, for a request that goes this way; none unless it is made, and still open, and nothing
    /// has come over it.
    [[nodiscard]] FileDescriptor take(const QUrl& url, const QByteArray& proxy);

    /// When nobody will need it any more.
    [[nodiscard]] Time end() const { return m_end; }

private:
    CURLM* m_multi;
    QUrl m_url;
    QByteArray m_proxy;
    Time m_end;
    CURL* m_easy = nullptr;
    FileDescriptor m_connection;
};

}  // namespace tralio
