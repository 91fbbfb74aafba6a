#include "programs/http/proxies.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <proxy.h>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace tralio {
namespace {

std::string inLibcurlsForm(const std::string& proxy) {
    if (proxy.starts_with("direct"))
        return {};
    // The proxy must resolve host names, too: behind it there may be no other name server.
    if (proxy.starts_with("socks://") || proxy.starts_with("socks5://"))
        return "socks5h" + proxy.substr(proxy.find(':'));
    return proxy;
}

std::vector<std::string> proxiesFor(pxProxyFactory* factory, const std::string& address) {
    std::vector<std::string> found;
    if (char** proxies = px_proxy_factory_get_proxies(factory, address.c_str())) {
        for (char** proxy = proxies; *proxy != nullptr; ++proxy)
            found.push_back(inLibcurlsForm(*proxy));
        px_proxy_factory_free_proxies(proxies);
    }
    if (found.empty())
        found.emplace_back();
    return found;
}

}  // namespace

/// Shared with the thread: questions wait here for it, and answers for the program.
struct Proxies::Desk {
    ~Desk() { close(event); }

    void serve() {
        pxProxyFactory* factory = px_proxy_factory_new();
        std::unique_lock lock(mutex);
        for (;;) {
            asked.wait(lock, [this] { return isClosed || !questions.empty(); });
            if (isClosed)
                break;
            const auto [request, address] = questions.front();
            questions.pop_front();
            lock.unlock();
            const std::vector<std::string> proxies =
                factory ? proxiesFor(factory, address) : std::vector<std::string>(1);
            lock.lock();
            answers.push_back({request, proxies});
            eventfd_write(event, 1);
        }
        if (factory)
            px_proxy_factory_free(factory);
    }

    const int event = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    std::mutex mutex;
    std::condition_variable asked;
    std::deque<std::pair<uint32_t, std::string>> questions;
    std::vector<Answer> answers;
    bool hasThread = false;
    bool isClosed = false;
};

Proxies::Proxies() : m_desk(std::make_shared<Desk>()) {}

Proxies::~Proxies() {
    const std::lock_guard lock(m_desk->mutex);
    m_desk->isClosed = true;
    m_desk->asked.notify_one();
}

void Proxies::ask(uint32_t request, const Address& address) {
    // Proxy scripts get neither user name nor path, which are private.
    const std::string server = address.scheme + "://" + authorityOf(address) + '/';
    const std::lock_guard lock(m_desk->mutex);
    m_desk->questions.emplace_back(request, server);
    m_desk->asked.notify_one();
    startThread(m_desk);
}

void Proxies::withdraw(uint32_t request) {
    const std::lock_guard lock(m_desk->mutex);
    std::erase_if(m_desk->questions, [request](const auto& question) { return question.first == request; });
}

void Proxies::startThread(const std::shared_ptr<Desk>& desk) {
    if (!std::exchange(desk->hasThread, true))
        std::thread([desk] { desk->serve(); }).detach();
}

void Proxies::giveUp() {
    const auto old = std::exchange(m_desk, std::make_shared<Desk>());
    const std::lock_guard lock(old->mutex);
    old->isClosed = true;
    m_desk->questions.swap(old->questions);
    m_desk->answers.swap(old->answers);
    if (!m_desk->answers.empty())
        eventfd_write(m_desk->event, 1);
    if (!m_desk->questions.empty())
        startThread(m_desk);
}

int Proxies::descriptor() const {
    return m_desk->event;
}

std::vector<Proxies::Answer> Proxies::takeAnswers() {
    eventfd_t count = 0;
    eventfd_read(m_desk->event, &count);
    const std::lock_guard lock(m_desk->mutex);
    return std::exchange(m_desk->answers, {});
}

}  // namespace tralio
