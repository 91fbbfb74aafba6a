// Prints a table of the memory and time that the program needs on a virtual desktop, beside a bare tray
// program and other resident ones. The figures are for reading; nothing is asserted.

#include <QApplication>
#include <QCommandLineParser>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QStandardPaths>
#include <QTest>
#include <QTextStream>
#include <QTimer>

#include <csignal>
#include <exception>

#include "desktop/virtual_desktop.h"
#include "figures.h"
#include "platform/linux/helpers/helper_http_client.h"
#include "recognition.h"
#include "state/sqlite_key_value_store.h"
#include "support/stand_in_model.h"
#include "support/tls_server.h"
#include "window_watch.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int warmPresses = 5;

void sleepFor(int seconds) {
    [[maybe_unused]] const bool never = waitUntil([] { return false; }, seconds);
}

/// A resident program and its measurements.
struct Contestant {
    QString name;
    QString program;
    std::function<void(const QProcess&)> open = {};  ///< shows its window

    Samples start = {};
    Samples idle[3] = {};  ///< PSS, USS, RSS
    Samples opened[3] = {};
    Samples openedAlone = {};  ///< PSS without its helper programs
    Samples firstWindow = {};
    Samples wakeUps = {};
};

void note(Samples (&samples)[3], const Memory& memory) {
    samples[0].add(memory.proportional);
    samples[1].add(memory.unique);
    samples[2].add(memory.resident);
}

class Benchmark final {
public:
    Benchmark(int rounds, int translations) : m_rounds(rounds), m_translations(translations) {
        qputenv("DISPLAY", m_desktop.environment().value(u"DISPLAY"_s).toUtf8());
        m_watch = std::make_unique<WindowWatch>();
        SqliteKeyValueStore store(m_desktop.home() + u"/.local/share/tralio/tralio.sqlite"_s);
        store.setValue(u"app_setting_base_url"_s, m_standIn.baseURL());
        store.setValue(u"hasCompletedOnboarding"_s, true);
        // Start in the tray, as the other programs do.
        m_desktop.write(u".goldendict/config"_s,
            u"<config><preferences><enableTrayIcon>1</enableTrayIcon><startToTray>1</startToTray>"
            u"</preferences></config>"_s);

        add({.name = u"Tralio"_s,
            .program = QStringLiteral(TRALIO_PROGRAM),
            .open = [this](const QProcess&) { m_watch->pressHotKey(); }});
        add({.name = u"bare Qt tray"_s,
            .program = QStringLiteral(BARE_TRAY),
            .open = [](const QProcess& bare) { kill(static_cast<pid_t>(bare.processId()), SIGUSR1); }});
        add({.name = u"copyq"_s,
            .program = QStandardPaths::findExecutable(u"copyq"_s),
            .open = [this](auto&) { m_desktop.start(u"copyq"_s, {u"show"_s}); }});
        add({.name = u"goldendict"_s,
            .program = QStandardPaths::findExecutable(u"goldendict"_s),
            .open = [this](auto&) { m_desktop.start(u"goldendict"_s, {u"interface"_s}); }});
        add({.name = u"flameshot"_s, .program = QStandardPaths::findExecutable(u"flameshot"_s)});
    }

    void run() {
        m_desktop.start(u"mousepad"_s,
            {u"--disable-server"_s, m_desktop.write(u"a.txt"_s, u"A sentence to translate."_s)});
        // Start each once before measuring, so that all are in the page cache and have created their files.
        for (const Contestant& contestant : m_contestants) {
            QProcess& process = m_desktop.start(contestant.program);
            sleepFor(3);
            end(process);
        }
        for (int round = 0; round < m_rounds; ++round)
            for (Contestant& contestant : m_contestants)
                measure(contestant);
        measureGrowth();
        m_recognition = measureRecognition(m_desktop.home(), m_rounds);
        measureHelper();
        print();
    }

private:
    void add(Contestant contestant) {
        if (!contestant.program.isEmpty())
            m_contestants.push_back(std::move(contestant));
    }

    /// Selects a text in the application in front.
    void mark() {
        if (m_desktop.bringToFront(u"Mousepad"_s).isEmpty())
            throw std::runtime_error("mousepad does not come to the front");
        m_desktop.press(u"ctrl+a"_s);
        sleepFor(1);
    }

    void measure(Contestant& contestant) {
        const bool isOurs = &contestant == &m_contestants.front();
        QProcess* process = nullptr;
        contestant.start.add(m_watch->untilOneComes(
            WindowWatch::Coming::intoTrayOrFrame, [&] { process = &m_desktop.start(contestant.program); }));
        sleepFor(3);
        constexpr int idleSeconds = 5;
        const qint64 before = wakeUpsOf(process->processId());
        sleepFor(idleSeconds);
        contestant.wakeUps.add(static_cast<double>(wakeUpsOf(process->processId()) - before) / idleSeconds);
        note(contestant.idle, memoryOf(process->processId()));
        if (contestant.open) {
            mark();
            QElapsedTimer sincePress;
            sincePress.start();
            contestant.firstWindow.add(
                m_watch->untilOneComes(WindowWatch::Coming::ontoScreen, [&] { contestant.open(*process); }));
            if (isOurs)
                m_firstRequest.add(untilRequest(sincePress));
            sleepFor(1);
            note(contestant.opened, memoryOf(process->processId()));
            contestant.openedAlone.add(memoryOf(process->processId(), Including::itself).proportional);
            for (int press = 0; isOurs && press < warmPresses; ++press)
                pressAgain();
        }
        end(*process);
    }

    static void end(QProcess& process) {
        process.terminate();
        if (!process.waitForFinished(5000))
            process.kill();
        process.waitForFinished();
    }

    void pressAgain() {
        m_desktop.press(u"Escape"_s);
        mark();
        QElapsedTimer sincePress;
        sincePress.start();
        m_warmPopover.add(
            m_watch->untilOneComes(WindowWatch::Coming::ontoScreen, [this] { m_watch->pressHotKey(); }));
        m_warmRequest.add(untilRequest(sincePress));
        sleepFor(1);
    }

    /// Milliseconds from the start of `time` until the stand-in receives the next request.
    double untilRequest(const QElapsedTimer& time) {
        QEventLoop loop;
        double came = 0;
        QObject::connect(&m_standIn, &StandInModel::requestReceived, &loop, [&] {
            came = static_cast<double>(time.nsecsElapsed()) / 1e6;
            loop.quit();
        });
        QTimer::singleShot(5000, &loop, &QEventLoop::quit);
        loop.exec();
        return came;
    }

    void translate(const QString& text) {
        const qsizetype requests = m_standIn.requests().size();
        QDBusMessage call = QDBusMessage::createMethodCall(
            u"org.tralio.Tralio"_s, u"/org/tralio/Tralio"_s, u"org.tralio.Tralio"_s, u"TranslateText"_s);
        call << text;
        QDBusConnection::sessionBus().asyncCall(call);
        if (!waitUntil([&] { return m_standIn.requests().size() > requests; }, 5))
            throw std::runtime_error("a translation was not requested");
        // A text that comes sooner replaces the one before.
        [[maybe_unused]] const bool never = QTest::qWaitFor([] { return false; }, 320);
    }

    /// The memory in use after enough translations to fill the history, and some more.
    void measureGrowth() {
        const QProcess& process = m_desktop.start(QStringLiteral(TRALIO_PROGRAM));
        sleepFor(3);
        m_standIn.translatesTo(u"Giao diện tốt nhất là giao diện mà bạn không còn để ý đến nữa."_s);
        constexpr int historyLimit = 50;
        double before = 0;
        for (int i = 0; i < historyLimit + m_translations; ++i) {
            if (i == historyLimit)
                before = memoryOf(process.processId()).unique;
            translate(u"Sentence %1 of many that are to be translated."_s.arg(i));
        }
        m_growth = memoryOf(process.processId()).unique - before;
    }

    /// The memory of tralio-http after a request over TLS.
    void measureHelper() {
        const QTemporaryDir folder;
        makeCertificates(folder);
        const TlsServer server(folder, {u"-cert"_s, u"good.pem"_s, u"-key"_s, u"good.key"_s});
        qputenv("SSL_CERT_FILE", QFile::encodeName(folder.filePath(u"ca.pem"_s)));
        SystemClock clock;
        HelperHttpClient client(QStringLiteral(HTTP_PROGRAM), clock);
        client.prepare(QUrl());  // keeps the process alive after the request
        QCoro::Task<HttpResponse> getting = client.get({QUrl(server.url)}, std::chrono::seconds(10), {});
        if (waitUntil([&] { return getting.isReady(); }, 10))
            m_helper = memoryOf(client.helperProcessId());
    }

    void row(const QString& what, const std::function<QString(const Contestant&)>& cell) {
        m_out << "| " << what << " |";
        for (const Contestant& contestant : m_contestants)
            m_out << ' ' << cell(contestant) << " |";
        m_out << '\n';
    }
    void ownRow(const QString& what, const QString& value) {
        row(
            what,
            [&](const Contestant& contestant) {
                return &contestant == &m_contestants.front() ? value : QString();
            });
    }

    void print() {
        const auto number = [](double value) { return QString::number(value, 'f', 1); };
        row(
            QString(), [](const Contestant& contestant) { return contestant.name; });
        row(
            u"---"_s, [](const Contestant&) { return u"---"_s; });
        row(u"start to tray icon, ms"_s, [](const Contestant& c) { return c.start.text(); });
        const QString kinds[] = {u"PSS"_s, u"USS"_s, u"RSS"_s};
        for (int i = 0; i < 3; ++i)
            row(u"idle %1, MiB"_s.arg(kinds[i]), [i](const Contestant& c) { return c.idle[i].text(); });
        for (int i = 0; i < 3; ++i)
            row(u"window open %1, MiB"_s.arg(kinds[i]),
                [i](const Contestant& c) { return c.opened[i].text(); });
        ownRow(u"the same PSS without `tralio-http`, MiB"_s, m_contestants.front().openedAlone.text());
        row(
            u"wake-ups a second, idle"_s, [](const Contestant& c) { return c.wakeUps.text(); });
        row(u"asked for, to window, first, ms"_s, [](const Contestant& c) { return c.firstWindow.text(); });
        ownRow(u"the same, warm, ms"_s, m_warmPopover.text());
        ownRow(u"the same, warm, 95th, ms"_s, number(m_warmPopover.percentile(95)));
        ownRow(u"hot key to request, first, ms"_s, m_firstRequest.text());
        ownRow(u"the same, warm, ms"_s, m_warmRequest.text());
        ownRow(u"the same, warm, 95th, ms"_s, number(m_warmRequest.percentile(95)));
        ownRow(u"`tralio-http` PSS after https, MiB"_s, number(m_helper.proportional));
        ownRow(u"growth (USS) over %1 translations, MiB"_s.arg(m_translations), number(m_growth));
        ownRow(u"recognising 600×200, warm, ms"_s, m_recognition.ours.text());
        ownRow(u"the `tesseract` program on it, ms"_s, m_recognition.tesseract.text());
    }

    int m_rounds;
    int m_translations;
    VirtualDesktop m_desktop;
    StandInModel m_standIn;
    std::unique_ptr<WindowWatch> m_watch;
    std::vector<Contestant> m_contestants;
    Samples m_warmPopover;
    Samples m_firstRequest;
    Samples m_warmRequest;
    double m_growth = 0;
    Memory m_helper;
    Recognition m_recognition;
    QTextStream m_out{stdout};
};

}  // namespace
}  // namespace tralio

int main(int argc, char** argv) {
    using namespace Qt::StringLiterals;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    const QCommandLineOption rounds(u"rounds"_s, u"How often each program is started."_s, u"times"_s, u"5"_s);
    const QCommandLineOption translations(
        u"translations"_s, u"Over how many the growth is measured."_s, u"count"_s, u"1000"_s);
    options.addOptions({rounds, translations});
    options.process(application);
    try {
        tralio::Benchmark(options.value(rounds).toInt(), options.value(translations).toInt()).run();
    } catch (const std::exception& error) {
        QTextStream(stderr) << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
