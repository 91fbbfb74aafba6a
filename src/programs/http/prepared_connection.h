#pragma once

#include <chrono>
#include <curl/curl.h>
#include <string>

#include "programs/http/address.h"
#include "programs/http/file_descriptor.h"

namespace tralio {

/// A connection that is made before there is anything to send over it, within the time that a hot key takes
/// anyway. Nothing has been sent over it, and so nothing that comes can be the answer to anything else.
class PreparedConnection final {
public:
    using Time = std::chrono::steady_clock::time_point;

    PreparedConnection(CURLM* multi, Address address);
    PreparedConnection(const PreparedConnection&) = delete;
    PreparedConnection& operator=(const PreparedConnection&) = delete;
    ~PreparedConnection();

    [[nodiscard]] const Address& address() const { return m_address; }
    [[nodiscard]] CURL* handle() const { return m_easy; }

    /// Connects, to the proxy if there is one.
    void connect(const std::string& proxy);
    /// The connecting has come to its end.
    void conclude(CURLcode code);

    /// Whether it is being made, for a request that goes this way.
    [[nodiscard]] bool isUnderWay(const Address& address, const std::string& proxy) const;
    /// The connection, for a request that goes this way; none unless it is made, and still open, and nothing
    /// has come over it.
    [[nodiscard]] FileDescriptor take(const Address& address, const std::string& proxy);

    /// When nobody will need it any more.
    [[nodiscard]] Time end() const { return m_end; }

private:
    CURLM* m_multi;
    Address m_address;
    std::string m_proxy;
    Time m_end;
    CURL* m_easy = nullptr;
    FileDescriptor m_connection;
};

}  // namespace tralio
