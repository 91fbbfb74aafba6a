// Prints what the program costs in memory and time on a virtual desktop, beside a bare tray program in the
// same run. Figures to read, not to assert.

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>

#include <algorithm>
#include <csignal>
#include <exception>
#include <xcb/xtest.h>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "platform/linux/helpers/helper_http_client.h"
#include "platform/linux/x11/x11_connection.h"

namespace {

using namespace Qt::StringLiterals;
using namespace tralio;

constexpr int rounds = 5;
constexpr quint8 superKey = 133;
constexpr quint8 shiftKey = 50;
constexpr quint8 dKey = 40;

double megabytes(qint64 pid) {
    QFile rollup(u"/proc/%1/smaps_rollup"_s.arg(pid));
    if (!rollup.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : rollup.readAll().split('\n'))
        if (line.startsWith("Pss:"))
            return line.mid(4).trimmed().split(' ').first().toDouble() / 1024;
    return 0;
}

/// How often the threads of a process have been woken.
qint64 wakeUps(qint64 pid) {
    qint64 sum = 0;
    const QDir tasks(u"/proc/%1/task"_s.arg(pid));
    for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile status(tasks.filePath(task + u"/status"_s));
        if (!status.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& line : status.readAll().split('\n'))
            if (line.startsWith("voluntary_ctxt_switches:"))
                sum += line.mid(24).trimmed().toLongLong();
    }
    return sum;
}

void sleepFor(int seconds) {
    [[maybe_unused]] const bool never = waitUntil([] { return false; }, seconds);
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

/// Sees windows come on the display, to the moment.
class Watcher {
public:
    Watcher() : m_connection(X11Connection::open()) {
        const quint32 events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection->xcb(), m_connection->root(), XCB_CW_EVENT_MASK, &events);
        m_connection->sync();
    }

    /// Milliseconds from now until a window is put into a tray or frame, or mapped on the screen; then what
    /// `trigger` did is visible.
    double untilWindowComes(quint8 event, const std::function<void(X11Connection&)>& trigger) {
        m_connection->dispatchPending();
        QElapsedTimer time;
        time.start();
        trigger(*m_connection);
        const auto seen = m_connection->waitFor(
            [&](const xcb_generic_event_t& candidate) { return (candidate.response_type & 0x7f) == event; },
            QDeadlineTimer(5000));
        return seen ? static_cast<double>(time.nsecsElapsed()) / 1e6 : 0;
    }

private:
    std::unique_ptr<X11Connection> m_connection;
};

void pressHotKey(X11Connection& connection) {
    const auto fake = [&](quint8 type, quint8 key) {
        xcb_test_fake_input(connection.xcb(), type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    };
    for (const quint8 key : {superKey, shiftKey, dKey})
        fake(XCB_KEY_PRESS, key);
    for (const quint8 key : {dKey, shiftKey, superKey})
        fake(XCB_KEY_RELEASE, key);
    xcb_flush(connection.xcb());
}

double startToTray(VirtualDesktop& desktop, Watcher& watcher, const QString& program) {
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        QProcess* process = nullptr;
        times.push_back(watcher.untilWindowComes(
            XCB_REPARENT_NOTIFY, [&](X11Connection&) { process = &desktop.start(program); }));
        process->terminate();
        process->waitForFinished();
    }
    return median(times);
}

/// What tralio-http holds after a request by TLS, while the resident program runs, with which it shares
/// the toolkit.
double helperAfterRequest() {
    StandInModel server(StandInModel::Encryption::selfSigned);
    qputenv("SSL_CERT_FILE", QFile::encodeName(server.certificate()));
    SystemClock clock;
    HelperHttpClient client(QStringLiteral(HTTP_PROGRAM), clock);
    const HttpRequest request{QUrl(server.baseURL())};
    QCoro::Task<HttpResponse> sending = client.send(request, "{}", std::chrono::seconds(10), {});
    return waitUntil([&] { return sending.isReady(); }, 10) ? megabytes(client.helperProcessId()) : 0;
}

void measure() {
    QTextStream out(stdout);
    out.setRealNumberPrecision(1);
    out.setRealNumberNotation(QTextStream::FixedNotation);
    VirtualDesktop desktop;
    qputenv("DISPLAY", desktop.environment().value(u"DISPLAY"_s).toUtf8());
    Watcher watcher;

    const double bareStart = startToTray(desktop, watcher, QStringLiteral(BARE_TRAY));
    const double start = startToTray(desktop, watcher, QStringLiteral(TRALIO_PROGRAM));
    out << "start to tray icon:            " << start << " ms, bare " << bareStart
        << " ms: " << start / bareStart << " times\n"
        << Qt::flush;

    QProcess& bare = desktop.start(QStringLiteral(BARE_TRAY));
    ProgramRun program(desktop);
    program.standIn().translatesTo(u"Giao diện tốt nhất là giao diện mà bạn không còn để ý đến nữa."_s);
    sleepFor(2);
    const qint64 before = wakeUps(program.processId());
    sleepFor(10);
    out << "idle, tray only:               " << megabytes(program.processId()) << " MB PSS, bare "
        << megabytes(bare.processId()) << " MB; "
        << static_cast<double>(wakeUps(program.processId()) - before) / 10 << " wake-ups a second\n"
        << Qt::flush;

    const double bareWindow = watcher.untilWindowComes(
        XCB_REPARENT_NOTIFY, [&](X11Connection&) { kill(static_cast<pid_t>(bare.processId()), SIGUSR1); });
    desktop.start(
        u"mousepad"_s, {u"--disable-server"_s, desktop.write(u"a.txt"_s, u"A sentence to translate."_s)});
    std::vector<double> popover;
    std::vector<double> request;
    for (int round = 0; round <= rounds; ++round) {
        if (desktop.bringToFront(u"Mousepad"_s).isEmpty())
            return;
        desktop.press(u"ctrl+a"_s);
        sleepFor(1);
        QElapsedTimer sincePress;
        sincePress.start();
        const qsizetype requests = program.standIn().requests().size();
        popover.push_back(watcher.untilWindowComes(XCB_MAP_NOTIFY, pressHotKey));
        if (waitUntil([&] { return program.standIn().requests().size() > requests; }, 5))
            request.push_back(static_cast<double>(sincePress.nsecsElapsed()) / 1e6);
        if (round == 0)
            out << "hot key to popover, first:     " << popover.front() << " ms (a bare window " << bareWindow
                << " ms)\n";
        sleepFor(1);
        if (round == rounds)
            out << "popover open:                  " << megabytes(program.processId()) << " MB PSS\n";
        desktop.press(u"Escape"_s);
        sleepFor(1);
    }
    popover.erase(popover.begin());
    out << "hot key to popover, warm:      " << median(popover) << " ms\n"
        << "hot key to request on wire:    " << median(request) << " ms, of which 130 are fixed\n"
        << "tralio-http after a request:   " << helperAfterRequest() << " MB PSS\n";
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    try {
        measure();
    } catch (const std::exception& error) {
        QTextStream(stderr) << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
