#include "programs/http/server.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "engine/loopback.h"
#include "programs/http/redirections.h"

namespace tralio {

using namespace http_protocol;

namespace {

constexpr int longestWait = 60'000;

}  // namespace

Server::Server(int requests, int replies)
    : m_requests(requests),
      m_send([replies](Reply reply) { frames::writeAll(replies, encode(std::move(reply))); }) {
    curl_share_setopt(m_share.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
}

Server::~Server() {
    while (!m_transfers.empty())
        remove(m_transfers.begin()->first);
}

int Server::run() {
    for (;;) {
        int running = 0;
        curl_multi_perform(m_multi.get(), &running);
        concludeTransfers();
        endHopelessTransfers();
        curl_waitfd others[] = {
            {m_requests, CURL_WAIT_POLLIN, 0}, {m_proxies.descriptor(), CURL_WAIT_POLLIN, 0}};
        curl_multi_poll(m_multi.get(), others, std::size(others), millisecondsToWait(), nullptr);
        takeProxies();
        if (others[0].revents != 0)
            if (const std::optional<int> status = readRequests())
                return *status;
    }
}

std::optional<int> Server::readRequests() {
    if (!m_frames.readFrom(m_requests))
        return EXIT_SUCCESS;
    while (const auto payload = m_frames.next()) {
        auto request = decodeRequest(*payload);
        if (!request)
            return EXIT_FAILURE;
        std::visit([this](auto& message) { serve(message); }, *request);
    }
    return m_frames.isBroken() ? std::optional(EXIT_FAILURE) : std::nullopt;
}

void Server::serve(Post& post) {
    start(std::make_unique<Transfer>(std::move(post), m_send));
}

void Server::serve(Get& get) {
    start(std::make_unique<Transfer>(std::move(get), m_send));
}

void Server::serve(const Cancel& cancel) {
    remove(cancel.id);
}

void Server::serve(const Ping& /*ping*/) const {
    m_send(Pong{});
}

void Server::serve(const Prepare& prepare) {
    m_proxies.withdraw(m_preparation);
    m_prepared.reset();
    endPreparation();
    const Address address = addressOf(prepare.url);
    if (!whyNotToGoTo(address, AddressOrigin::enteredByUser).empty())
        return;
    m_prepared = std::make_unique<PreparedConnection>(m_multi.get(), address);
    if (isLoopback(address.host))
        m_prepared->connect({});
    else
        m_proxies.ask(--m_preparation, address);
}

void Server::start(std::unique_ptr<Transfer> transfer) {
    if (!transfer->canBegin())
        return;
    const Id id = transfer->id();
    remove(id);
    proceed(*m_transfers.emplace(id, std::move(transfer)).first->second);
}

void Server::proceed(Transfer& transfer) {
    if (transfer.hasOtherProxy())
        go(transfer, transfer.otherProxies());
    else if (isLoopback(transfer.address().host))
        go(transfer, {""});
    else
        m_proxies.ask(transfer.id(), transfer.address());
}

void Server::takeProxies() {
    for (const Proxies::Answer& answer : m_proxies.takeAnswers()) {
        const auto found = m_transfers.find(answer.request);
        if (found != m_transfers.end() && !found->second->handle())
            go(*found->second, answer.proxies);
        else if (answer.request == m_preparation && m_prepared && !m_prepared->handle())
            m_prepared->connect(answer.proxies.front());
    }
}

void Server::go(Transfer& transfer, std::vector<std::string> proxies) {
    const std::string proxy = proxies.front();
    transfer.begin(std::move(proxies), m_share.get());
    if (m_prepared && !m_awaiting && m_prepared->isUnderWay(transfer.address(), proxy))
        m_awaiting = {transfer.id(), proxy};
    else
        send(transfer, proxy);
}

void Server::send(Transfer& transfer, const std::string& proxy) {
    // A prepared connection that another transfer waits for belongs to that one.
    if (m_prepared && !m_awaiting && isSameOrigin(m_prepared->address(), transfer.address())) {
        transfer.useConnection(m_prepared->take(transfer.address(), proxy));
        m_prepared.reset();
    }
    curl_multi_add_handle(m_multi.get(), transfer.handle());
}

void Server::endPreparation() {
    const auto awaiting = std::exchange(m_awaiting, std::nullopt);
    const auto found = awaiting ? m_transfers.find(awaiting->first) : m_transfers.end();
    if (found != m_transfers.end())
        send(*found->second, awaiting->second);
}

void Server::concludeTransfers() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi.get(), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        const CURLcode code = message->data.result;
        if (m_prepared && m_prepared->handle() == message->easy_handle) {
            m_prepared->conclude(code);
            endPreparation();
            continue;
        }
        void* owner = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &owner);
        auto& transfer = *static_cast<Transfer*>(owner);
        curl_multi_remove_handle(m_multi.get(), message->easy_handle);
        if (transfer.conclude(code) == Transfer::Next::goesOn)
            proceed(transfer);
        else
            m_transfers.erase(transfer.id());
    }
}

void Server::endHopelessTransfers() {
    const auto now = std::chrono::steady_clock::now();
    bool isProxySilent = false;
    for (auto next = m_transfers.begin(); next != m_transfers.end();) {
        const auto current = next++;
        if (!current->second->isSilent(now) && !current->second->isEndless())
            continue;
        isProxySilent |= !current->second->handle();
        remove(current->first);
    }
    if (isProxySilent)
        m_proxies.giveUp();
    if (m_prepared && now >= m_prepared->end()) {
        m_prepared.reset();
        endPreparation();
    }
}

void Server::remove(Id id) {
    m_proxies.withdraw(id);
    if (isAwaiting(id))
        m_awaiting.reset();
    const auto node = m_transfers.extract(id);
    if (!node.empty() && node.mapped()->handle())
        curl_multi_remove_handle(m_multi.get(), node.mapped()->handle());
}

int Server::millisecondsToWait() const {
    using namespace std::chrono;
    milliseconds wait(longestWait);
    const auto now = steady_clock::now();
    if (m_prepared)
        wait = std::min(wait, ceil<milliseconds>(m_prepared->end() - now));
    for (const auto& [id, transfer] : m_transfers)
        wait = std::min(wait, ceil<milliseconds>(transfer->nextLook(now) - now));
    return static_cast<int>(std::max<milliseconds::rep>(0, wait.count()));
}

}  // namespace tralio
