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

QByteArray inLibcurlsForm(const QByteArray& proxy) {
    if (proxy.startsWith("direct"))
        return {};
    // The proxy is to look names up, too: behind one there may be no other way.
    if (proxy.startsWith("socks://") || proxy.startsWith("socks5://"))
        return "socks5h" + proxy.sliced(proxy.indexOf(':'));
    return proxy;
}

QByteArrayList proxiesFor(pxProxyFactory* factory, const QByteArray& address) {
    QByteArrayList found;
    if (char** proxies = px_proxy_factory_get_proxies(factory, address.constData())) {
        for (char** proxy = proxies; *proxy != nullptr; ++proxy)
            found += inLibcurlsForm(*proxy);
        px_proxy_factory_free_proxies(proxies);
    }
    return found;
}

}  // namespace

/// Where questions wait for the thread, and answers for the program.
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
            const QByteArrayList proxies = factory ? proxiesFor(factory, address) : QByteArrayList();
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
    std::deque<std::pair<quint32, QByteArray>> questions;
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

void Proxies::ask(quint32 request, const QUrl& url) {
    // Neither the user's name nor what is asked for is the proxy script's business.
    const QByteArray address =
        url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment) +
        '/';
    const std::lock_guard lock(m_desk->mutex);
    m_desk->questions.emplace_back(request, address);
    m_desk->asked.notify_one();
    startThread(m_desk);
}

void Proxies::withdraw(quint32 request) {
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
