#include "platform/linux/helpers/helper_process.h"

#include <QFileInfo>
#include <QPointer>

#include <algorithm>
#include <utility>

#include "platform/linux/helpers/serving.h"

namespace tralio {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pingInterval = 2s;
constexpr auto lastChance = 1s;
constexpr auto timeToEnd = 5s;

void deleteOnceEnded(QProcess* process) {
    process->disconnect();
    if (process->state() == QProcess::NotRunning)
        process->deleteLater();
    else
        QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
}

}  // namespace

HelperProcess::HelperProcess(Terms terms, Clock& clock)
    : m_terms(std::move(terms)), m_clock(clock), m_frames(m_terms.maximumReply) {}

HelperProcess::~HelperProcess() {
    // Also the processes that have been told to end.
    for (QProcess* process : findChildren<QProcess*>()) {
        process->disconnect();
        process->kill();
        process->waitForFinished(1000);
    }
}

void HelperProcess::prepare(std::chrono::milliseconds keep) {
    start();
    keepFor(keep);
}

void HelperProcess::send(const std::string& frame) {
    start();
    m_process->write(frame.data(), static_cast<qint64>(frame.size()));
}

void HelperProcess::start() {
    if (m_process)
        return;
    m_process = new QProcess(this);
    m_frames = frames::Reader(m_terms.maximumReply);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const auto& [name, value] : m_terms.environment)
        environment.insert(name, value);
    m_process->setProcessEnvironment(environment);
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(m_process, &QProcess::readyReadStandardOutput, this, &HelperProcess::read);
    connect(m_process, &QProcess::finished, this, &HelperProcess::concludeEnd);
    // QProcess may report the failure from within `start`, while a frame is still to be sent: it is handled
    // later, if this process has not been given up by then.
    const auto refuseStart = [this, process = QPointer(m_process)] {
        if (process && m_process == process)
            giveUp(m_terms.words.cannotStart);
    };
    connect(
        m_process, &QProcess::errorOccurred, this,
        [refuseStart](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                refuseStart();
        },
        Qt::QueuedConnection);
    // WORKAROUND: Qt 6.4 loses a file descriptor with every program that it cannot start.
    if (QFileInfo(m_terms.program).isExecutable())
        m_process->start(m_terms.program, {QString::fromLatin1(serving::argument())});
    else
        QMetaObject::invokeMethod(this, refuseStart, Qt::QueuedConnection);
}

void HelperProcess::concludeEnd(int exitCode, QProcess::ExitStatus status) {
    const bool isOfOtherVersion = status == QProcess::NormalExit && exitCode == serving::otherVersion;
    giveUp(isOfOtherVersion ? u"Tralio vừa được cập nhật. Vui lòng thoát Tralio rồi mở lại."_s
                            : m_terms.words.ended);
}

void HelperProcess::setAtWork(bool isAtWork) {
    if (std::exchange(m_isAtWork, isAtWork) == isAtWork)
        return;
    if (!isAtWork) {
        m_pings.takeBack();
        m_silence.takeBack();
        keepFor(0s);
        return;
    }
    restartSilence(m_terms.silence);
    if (m_terms.ping)
        m_pings = m_clock.every(pingInterval, [this] { send(*m_terms.ping); });
}

void HelperProcess::allowSilence(std::chrono::milliseconds silence) {
    if (m_isAtWork)
        restartSilence(silence);
}

void HelperProcess::restartSilence(std::chrono::milliseconds silence) {
    // After a suspension of the machine the first timer fires late. The second one gives the helper, which
    // stood still too, time to speak before it counts as hung.
    const auto lastPart = std::min<std::chrono::milliseconds>(lastChance, silence);
    m_silence = m_clock.after(silence - lastPart,
        [this, lastPart] { m_silence = m_clock.after(lastPart, [this] { concludeSilence(); }); });
}

void HelperProcess::concludeSilence() {
    // If only this process stood still, the helper's answer, or the end of the helper, is already in the
    // pipe and counts as in time. It may be the beginning of a longer frame, so the wait starts again.
    const QProcess* process = m_process;
    restartSilence(m_terms.silence);
    if (!m_process->waitForReadyRead(0) && m_process == process)
        giveUp(m_terms.words.hangs);
}

void HelperProcess::read() {
    m_frames.add(m_process->readAllStandardOutput().toStdString());
    const QProcess* process = m_process;
    while (const std::optional<std::string> payload = m_frames.next()) {
        if (m_isAtWork)
            restartSilence(m_terms.silence);
        Q_EMIT arrived(*payload);
        if (m_process != process)
            return;
    }
    if (m_frames.isBroken())
        refuse();
}

void HelperProcess::keepFor(std::chrono::milliseconds time) {
    if (!m_process)
        return;
    m_kept[time] = m_clock.after(time, [this, time] {
        const auto spent = m_kept.extract(time);
        if (!m_isAtWork && m_kept.empty())
            dismiss();
    });
}

void HelperProcess::dismiss() {
    QProcess* process = std::exchange(m_process, nullptr);
    if (!process)
        return;
    deleteOnceEnded(process);
    process->closeWriteChannel();
    m_clock.after(timeToEnd, process, [process] { process->kill(); });
}

void HelperProcess::giveUp(const QString& words) {
    forget();
    Q_EMIT lost(words);
}

void HelperProcess::forget() {
    m_isAtWork = false;
    m_pings.takeBack();
    m_silence.takeBack();
    m_kept.clear();
    if (QProcess* process = std::exchange(m_process, nullptr)) {
        deleteOnceEnded(process);
        process->kill();
    }
}

qint64 HelperProcess::processId() const {
    return m_process ? m_process->processId() : 0;
}

}  // namespace tralio
