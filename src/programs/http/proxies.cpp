#include "programs/http/proxies.h"

#include <arpa/inet.h>
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

using namespace Qt::StringLiterals;

/// The first proxy of the desktop's list, in libcurl's form.
QByteArray firstProxy(pxProxyFactory* factory, const QByteArray& address) {
    char** proxies = px_proxy_factory_get_proxies(factory, address.constData());
    QByteArray first = proxies && proxies[0] ? QByteArray(proxies[0]) : QByteArray();
    if (proxies)
        px_proxy_factory_free_proxies(proxies);
    if (first.startsWith("direct"))
        return {};
    // The proxy is to look names up, too: behind one there may be no other way.
    if (first.startsWith("socks://") || first.startsWith("socks5://"))
        return "socks5h" + first.sliced(first.indexOf(':'));
    return first;
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
            const QByteArray proxy = factory ? firstProxy(factory, address) : QByteArray();
            lock.lock();
            answers.push_back({request, proxy});
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

bool Proxies::isOnThisMachine(const QUrl& url) {
    QString host = url.host().toLower();
    if (host.endsWith(u'.'))
        host.chop(1);  // a name that is whole
    in_addr four{};
    in6_addr six{};
    if (inet_pton(AF_INET, host.toLatin1().constData(), &four) == 1)
        return (ntohl(four.s_addr) >> 24) == 127;
    if (inet_pton(AF_INET6, host.toLatin1().constData(), &six) == 1)
        return IN6_IS_ADDR_LOOPBACK(&six) || (IN6_IS_ADDR_V4MAPPED(&six) && six.s6_addr[12] == 127);
    return host == u"localhost"_s || host.endsWith(u".localhost"_s);
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
