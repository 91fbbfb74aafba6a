#include "platform/linux/speech/speech_dispatcher.h"

#include <QProcess>
#include <QStandardPaths>

#include "common/clock.h"
#include "common/debug_log.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto retryInterval = 50ms;
/// The engine itself is asked only at every third probe: while it looks up its voices the daemon serves
/// nobody.
constexpr int probesPerQuestion = 3;
/// The daemon's substitute for engines that are missing: it plays a recording that asks the user to install
/// one.
constexpr QStringView noEngine = u"dummy";

QString sessionSocket() {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return (runtime.isEmpty() ? qEnvironmentVariable("HOME") + u"/.cache"_s : runtime) +
        u"/speech-dispatcher/speechd.sock"_s;
}

QStringList linesOf(const SsipConnection::Reply& reply) {
    return QString::fromUtf8(reply.data).split(u'\n', Qt::SkipEmptyParts);
}

}  // namespace

SpeechDispatcher::SpeechDispatcher(Clock& clock)
    : SpeechDispatcher(sessionSocket(), u"speech-dispatcher"_s, clock, {}) {}

SpeechDispatcher::SpeechDispatcher(QString socketPath, QString program, Clock& clock, Limits limits)
    : m_socketPath(std::move(socketPath)), m_program(std::move(program)), m_clock(clock), m_limits(limits) {}

SpeechDispatcher::~SpeechDispatcher() {
    if (m_connection)
        m_connection->abandon();
}

void SpeechDispatcher::speak(const Utterance& utterance, std::function<void(ReadingEnd)> onEnd) {
    m_idleLimit.takeBack();
    m_reading = Reading{utterance, std::move(onEnd), ++m_readings};
    if (m_modules)
        begin();
    else if (m_connection == nullptr && !m_startLimit)
        connectToDaemon();
}

void SpeechDispatcher::stopSpeaking() {
    if (!m_reading)
        return;
    if (m_modules)
        m_connection->send("CANCEL SELF");
    endReading(ReadingEnd::over);
}

void SpeechDispatcher::connectToDaemon() {
    m_connection = std::make_unique<SsipConnection>(m_socketPath, m_clock, m_limits.reply);
    connect(m_connection.get(), &SsipConnection::opened, this, &SpeechDispatcher::introduce);
    connect(m_connection.get(), &SsipConnection::eventArrived, this, &SpeechDispatcher::follow);
    connect(m_connection.get(), &SsipConnection::closed, this, [this](const QString& reason) {
        if (m_connection->hasOpened()) {
            fail(reason);
            return;
        }
        dropConnection();
        if (m_startLimit)
            m_retry = m_clock.after(retryInterval, [this] { connectToDaemon(); });
        else
            startDaemon();
    });
}

void SpeechDispatcher::startDaemon() {
    // The starter exits at about the time when the daemon, which goes into the background, begins to listen.
    m_startLimit = m_clock.after(m_limits.start, [this] { fail(u"the speech daemon does not start"_s); });
    m_starter = new QProcess(this);
    connect(
        m_starter, &QProcess::errorOccurred, this, [this] { fail(m_starter->errorString()); });
    connect(m_starter, &QProcess::finished, this, [this](int status) {
        if (status == 0)
            connectToDaemon();
        else
            fail(u"the speech daemon ends with status %1"_s.arg(status));
    });
    m_starter->setStandardInputFile(QProcess::nullDevice());
    m_starter->setStandardOutputFile(QProcess::nullDevice());
    m_starter->setStandardErrorFile(QProcess::nullDevice());
    // WORKAROUND: Qt 6.4 loses a file descriptor with every program that it cannot start.
    if (QStandardPaths::findExecutable(m_program).isEmpty())
        fail(u"%1 is not installed"_s.arg(m_program));
    else
        m_starter->start(m_program,
            {u"--spawn"_s, u"--communication-method"_s, u"unix_socket"_s, u"--socket-path"_s, m_socketPath});
}

void SpeechDispatcher::introduce() {
    endStart();
    m_connection->send(
        "SET SELF CLIENT_NAME " + qEnvironmentVariable("USER", u"user"_s).toUtf8() + ":tralio:main");
    m_connection->send("SET SELF NOTIFICATION ALL on");
    m_connection->send("SET SELF SSML_MODE on");
    m_connection->send("GET LANGUAGE",
        [this](const SsipConnection::Reply& reply) { m_defaultLanguage = linesOf(reply).value(0); });
    m_connection->send("GET OUTPUT_MODULE", [this](const SsipConnection::Reply& reply) {
        const QString first = linesOf(reply).value(0);
        m_connection->send("LIST OUTPUT_MODULES", [this, first](const SsipConnection::Reply& modules) {
            QStringList names = linesOf(modules);
            names.removeAll(noEngine);
            if (names.removeAll(first) > 0)
                names.prepend(first);
            listVoices(names);
        });
    });
}

void SpeechDispatcher::listVoices(const QStringList& moduleNames) {
    if (moduleNames.isEmpty()) {
        fail(u"the speech daemon has no engine"_s);
        return;
    }
    const auto modules = std::make_shared<std::vector<SpeechModule>>();
    for (const QString& name : moduleNames) {
        m_connection->send("SET SELF OUTPUT_MODULE " + name.toUtf8());
        m_connection->send("LIST SYNTHESIS_VOICES", [=, this](const SsipConnection::Reply& reply) {
            modules->push_back({name, languagesOf(reply.data)});
            if (qsizetype(modules->size()) < moduleNames.size())
                return;
            m_modules = std::move(*modules);
            if (m_reading)
                begin();
            else
                waitIdly();
        });
    }
}

void SpeechDispatcher::begin() {
    const SpeechVoice voice = chooseVoice(m_reading->utterance.voices, *m_modules)
                                  .value_or(SpeechVoice{m_modules->front().name, m_defaultLanguage});
    m_reading->module = voice.module;
    m_connection->send("SET SELF OUTPUT_MODULE " + voice.module.toUtf8());
    m_connection->send("SET SELF LANGUAGE " + voice.language.toUtf8());
    m_connection->speak(withMarks(m_reading->utterance.text),
        [this, number = m_reading->number](const SsipConnection::Reply& reply) {
            if (!isPresent(number))
                return;
            m_reading->message = linesOf(reply).value(0).toLongLong();
            if (reply.isSuccess())
                watch();
            else
                fail(u"the speech daemon refuses the text"_s);
        });
}

void SpeechDispatcher::follow(SsipConnection::Event event, qint64 message) {
    if (!m_reading)
        return;
    const bool isProbe = m_reading->message != 0 && message > m_reading->message;
    if (isProbe && event == SsipConnection::Event::begin) {
        // Another engine has begun to read the probe: the first one is dead. Cancel before disconnecting,
        // since the replacement may go on to speak and nobody could stop it then.
        m_connection->send("CANCEL SELF", [this, number = m_reading->number](const SsipConnection::Reply&) {
            if (isPresent(number))
                fail(u"the speech engine has died"_s);
        });
    }
    if (m_reading->message != message)
        return;
    if (event == SsipConnection::Event::end || event == SsipConnection::Event::cancel) {
        if (m_reading->probes > 0)
            m_connection->send("CANCEL SELF");
        endReading(ReadingEnd::over);
        return;
    }
    m_firstWordLimit.takeBack();
    if (event == SsipConnection::Event::mark)
        m_modulesWithMarks.insert(m_reading->module);
    if (event == SsipConnection::Event::begin && m_modulesWithMarks.contains(m_reading->module) &&
        tellsItsFirstWord(m_reading->utterance.text))
        m_firstWordLimit = m_clock.after(m_limits.firstWord, [this] { fail(u"no sound is heard"_s); });
    watch();
}

void SpeechDispatcher::watch() {
    m_quietLimit = m_clock.after(
        m_limits.quiet, [this] { probe(); });
}

void SpeechDispatcher::probe() {
    // The daemon does not report that an engine has died; it then starts the next queued message with
    // another engine. So an inaudible message is queued: if it begins before our text has ended, the engine
    // is dead.
    m_connection->speak(u"<speak><mark name=\"probe\"/></speak>"_s, {});
    if (++m_reading->probes % probesPerQuestion != 0) {
        watch();
        return;
    }
    // Without another engine, or with one that hangs, the probe never begins. Asking for the voices finds
    // these cases: a dead engine gives an error, and with a hung one the daemon does not reply.
    m_connection->send(
        "LIST SYNTHESIS_VOICES", [this, number = m_reading->number](const SsipConnection::Reply& reply) {
            if (!isPresent(number))
                return;
            if (reply.isSuccess())
                watch();
            else
                fail(u"the speech engine has died"_s);
        });
}

void SpeechDispatcher::fail(const QString& reason) {
    endStart();
    // Without clients the daemon ends; the next text then starts it anew, and its dead engines with it.
    dropConnection();
    if (!m_reading)
        return;
    debugLog(u"SpeechDispatcher: "_s + reason);
    endReading(ReadingEnd::failed);
}

void SpeechDispatcher::endReading(ReadingEnd end) {
    m_firstWordLimit.takeBack();
    m_quietLimit.takeBack();
    const std::function<void(ReadingEnd)> onEnd = std::move(m_reading->onEnd);
    m_reading.reset();
    waitIdly();
    onEnd(end);
}

void SpeechDispatcher::waitIdly() {
    if (m_modules)
        m_idleLimit = m_clock.after(
            m_limits.idle, [this] { dropConnection(); });
}

void SpeechDispatcher::endStart() {
    m_startLimit.takeBack();
    m_retry.takeBack();
    if (m_starter != nullptr) {
        m_starter->disconnect(this);
        m_starter->deleteLater();  // deleted later: it may be the caller
        m_starter = nullptr;
    }
}

void SpeechDispatcher::dropConnection() {
    if (m_connection) {
        m_connection->abandon();
        m_connection.release()->deleteLater();  // deleted later: it may be the caller
    }
    m_modules.reset();
    m_idleLimit.takeBack();
    m_firstWordLimit.takeBack();
    m_quietLimit.takeBack();
}

bool SpeechDispatcher::isPresent(qint64 number) const {
    return m_reading && m_reading->number == number;
}

}  // namespace tralio
