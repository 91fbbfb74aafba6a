#pragma once

#include <chrono>
#include <curl/curl.h>
#include <string>

#include "programs/http/address.h"
#include "programs/http/file_descriptor.h"

namespace tralio {

/// A TCP connection that is opened in advance, while the text for it is still being fetched. No byte has been
/// sent over it, so that no received byte can be a stale answer.
class PreparedConnection final {
public:
    using Time = std::chrono::steady_clock::time_point;

    PreparedConnection(CURLM* multi, Address address);
    PreparedConnection(const PreparedConnection&) = delete;
    PreparedConnection& operator=(const PreparedConnection&) = delete;
    ~PreparedConnection();

    [[nodiscard]] const Address& address() const { return m_address; }
    [[nodiscard]] CURL* handle() const { return m_easy; }

    /// Starts to connect, to `proxy` unless it is empty.
    void connect(const std::string& proxy);
    /// libcurl has finished connecting, with `code`.
    void conclude(CURLcode code);

    /// Whether it is still connecting, to the destination of this request by this proxy.
    [[nodiscard]] bool isUnderWay(const Address& address, const std::string& proxy) const;
    /// Hands over the connection for a request to `address` by `proxy`. An empty descriptor if the
    /// destination differs, or if the connection is not made, no longer open, or has received data.
    [[nodiscard]] FileDescriptor take(const Address& address, const std::string& proxy);

    /// When the connection is given up unused.
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
