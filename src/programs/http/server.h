#pragma once

#include <curl/curl.h>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/helpers/frames.h"
#include "platform/linux/helpers/http_protocol.h"
#include "programs/http/prepared_connection.h"
#include "programs/http/proxies.h"
#include "programs/http/transfer.h"

namespace tralio {

/// The event loop of the process: serves the requests from one descriptor concurrently, and answers on
/// another.
class Server final {
public:
    Server(int requests, int replies);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Runs until the requests end or one is malformed; returns the exit status.
    [[nodiscard]] int run();

private:
    using Id = http_protocol::Id;
    struct Cleanup {
        void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
    };
    struct ShareCleanup {
        void operator()(CURLSH* share) const { curl_share_cleanup(share); }
    };

    /// The exit status when the requests have ended or are malformed.
    [[nodiscard]] std::optional<int> readRequests();
    void serve(http_protocol::Post& post);
    void serve(http_protocol::Get& get);
    void serve(const http_protocol::Cancel& cancel);
    void serve(const http_protocol::Ping& ping) const;
    void serve(const http_protocol::Prepare& prepare);
    void start(std::unique_ptr<Transfer> transfer);
    /// Takes the next step for a transfer: asks for the proxies to its address, or sends it.
    void proceed(Transfer& transfer);
    void go(Transfer& transfer, std::vector<std::string> proxies);
    void send(Transfer& transfer, const std::string& proxy);
    /// Sends the request that waits for the prepared connection, over it or over a new one.
    void endPreparation();
    void takeProxies();
    void concludeTransfers();
    void endHopelessTransfers();
    void remove(Id id);
    [[nodiscard]] bool isAwaiting(Id id) const { return m_awaiting && m_awaiting->first == id; }
    [[nodiscard]] int millisecondsToWait() const;

    int m_requests;
    std::function<void(http_protocol::Reply)> m_send;
    frames::Reader m_frames{http_protocol::maximumRequest};
    Proxies m_proxies;
    std::unique_ptr<CURLSH, ShareCleanup> m_share{curl_share_init()};
    std::unique_ptr<CURLM, Cleanup> m_multi{curl_multi_init()};
    std::map<Id, std::unique_ptr<Transfer>> m_transfers;
    std::unique_ptr<PreparedConnection> m_prepared;
    /// The request that waits for the prepared connection, and the proxy it goes by.
    std::optional<std::pair<Id, std::string>> m_awaiting;
    /// The request id under which the prepared connection's proxy is asked for. Counts down from the
    /// maximum, requests count up.
    Id m_preparation = std::numeric_limits<Id>::max();
};

}  // namespace tralio
