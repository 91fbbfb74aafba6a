#include <QCoreApplication>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <map>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "common/clock.h"
#include "common/localized_error.h"
#include "platform/linux/helpers/frames.h"
#include "platform/linux/helpers/http_protocol.h"
#include "programs/http/in_process_http_client.h"

// The process that speaks with servers. It serves the program that started it over its standard input and
// output, and ends when that input does.

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace http_protocol;

class Server {
public:
    explicit Server(int replies) : m_replies(replies) {}

    void serve(Post post) {
        const std::stop_token stop = m_running[post.id].get_token();
        finish(post.id, m_client.send(std::move(post.request), std::move(post.body), post.idleTimeout, stop));
    }

    void serve(Get get) {
        const std::stop_token stop = m_running[get.id].get_token();
        HttpClient::Receive receive;
        if (get.inPieces)
            receive = [this, id = get.id](const QByteArray& bytes, std::optional<qint64> totalSize) {
                for (qsizetype sent = 0; sent < bytes.size(); sent += maximumPiece)
                    reply(Piece{id, bytes.mid(sent, maximumPiece), totalSize});
            };
        finish(get.id, m_client.download(std::move(get.request), std::move(receive), get.idleTimeout, stop));
    }

    void serve(Cancel cancel) {
        if (const auto running = m_running.find(cancel.id); running != m_running.end())
            running->second.request_stop();
    }

    void serve(Ping /*ping*/) const { reply(Pong{}); }

private:
    QCoro::Task<> finish(Id id, QCoro::Task<HttpResponse> transfer) {
        try {
            const HttpResponse response = co_await std::move(transfer);
            reply(Done{id, response});
        } catch (const LocalizedError& error) {
            reply(Failed{id, error.errorDescription()});
        }
        m_running.erase(id);
    }

    void reply(const Reply& reply) const { frames::writeAll(m_replies, encode(reply)); }

    int m_replies;
    std::map<Id, std::stop_source> m_running;
    SystemClock m_clock;
    InProcessHttpClient m_client{m_clock};
};

enum class Input { more, end, broken };

Input serveWhatCame(Server& server, frames::Reader& frames) {
    QByteArray bytes(1 << 16, Qt::Uninitialized);
    const ssize_t count = read(STDIN_FILENO, bytes.data(), static_cast<size_t>(bytes.size()));
    if (count < 0)
        return errno == EINTR || errno == EAGAIN ? Input::more : Input::broken;
    if (count == 0)
        return Input::end;
    bytes.truncate(count);
    frames.add(bytes);
    while (const auto payload = frames.next()) {
        auto request = decodeRequest(*payload);
        if (!request)
            return Input::broken;
        std::visit([&server](auto& message) { server.serve(std::move(message)); }, *request);
    }
    return frames.isBroken() ? Input::broken : Input::more;
}

/// Keys and texts go through this process, and what servers send.
void limitOneself() {
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);  // nor may the user's other programs read it
    constexpr rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

}  // namespace
}  // namespace tralio

int main(int argc, char** argv) {
    using namespace Qt::StringLiterals;
    using namespace tralio;
    // While it hangs it does not see the end of its input, with the user's key in its memory.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    limitOneself();
    QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().value(1) != u"--serve") {
        std::fputs("This program is started by Tralio, to speak with servers.\n", stderr);
        return 2;
    }
    const int replies = frames::takeStandardOutput();
    if (replies < 0)
        return EXIT_FAILURE;
    Server server(replies);
    frames::Reader requests(http_protocol::maximumRequest);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&] {
        const Input came = serveWhatCame(server, requests);
        if (came != Input::more)
            QCoreApplication::exit(came == Input::end ? EXIT_SUCCESS : EXIT_FAILURE);
    });
    return QCoreApplication::exec();
}
