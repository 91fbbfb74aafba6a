#include "desktop/program_run.h"

#include <QDir>

#include <utility>

#include "platform/linux/atspi/atspi_element.h"
#include "state/sqlite_key_value_store.h"

namespace tralio {
namespace {

constexpr int answerLimit = 1000;  // milliseconds

}  // namespace

AtspiReference findBelow(const AtspiReference& object, const AtspiQuestion& question,
    const std::function<bool(const AtspiReference&)>& isWanted) {
    if (isWanted(object))
        return object;
    for (const AtspiReference& child : childrenOf(object, question))
        if (const AtspiReference found = findBelow(child, question, isWanted); !found.isNull())
            return found;
    return {};
}

ProgramRun::ProgramRun(TestSession& desktop, const Stored& stored) : m_desktop(desktop) {
    {
        SqliteKeyValueStore store(desktop.home() + u"/.local/share/tralio/tralio.sqlite"_s);
        store.setValue(u"app_setting_base_url"_s, m_standIn.baseURL());
        store.setValue(u"hasCompletedOnboarding"_s, true);
        for (const auto& [key, value] : stored)
            store.setValue(key, value);
    }
    m_process = &desktop.start(QStringLiteral(TRALIO_PROGRAM));
    m_accessibility.open();
    // The program joins the accessibility bus from its event loop, after registering its hot keys.
    TestSession::awaitStart(u"tralio"_s, [this] {
        return isRunning() &&
            !applicationOf(processId(), {m_accessibility, TimeBudget(answerLimit)}).isNull();
    });
}

bool ProgramRun::isPopoverInFront() const {
    // The window manager still names the popover for some time after it has closed.
    return isPopoverShown() && m_desktop.xdotool(u"getactivewindow getwindowname"_s) == u"Tralio";
}

bool ProgramRun::isAsked(const QString& text) const {
    const auto& requests = m_standIn.requests();
    return waitUntil([&] { return !requests.isEmpty() && requests.last().userText() == text; });
}

AtspiReference applicationOf(qint64 process, const AtspiQuestion& question) {
    for (const AtspiReference& application : childrenOf(AtspiBus::desktop(), question))
        if (question.bus.processOf(application.service, question.budget) == process)
            return application;
    return {};
}

AtspiReference ProgramRun::find(
    const std::function<bool(const QString&)>& isWanted, const TimeBudget& budget) const {
    const AtspiQuestion question{m_accessibility, budget};
    return findBelow(applicationOf(processId(), question), question, [&](const AtspiReference& object) {
        return isWanted(nameOf(object, question)) && statesOf(object, question).contains(AtspiState::showing);
    });
}

QString ProgramRun::trayIcon() const {
    const QStringList popovers = m_desktop.xdotool(popoverWindows).split(u'\n');
    for (const QString& window : m_desktop.xdotool(u"search --onlyvisible --class ^tralio$"_s).split(u'\n'))
        if (!popovers.contains(window))
            return window;
    return {};
}

QRect ProgramRun::popoverArea() const {
    // Lines of WINDOW, X, Y, WIDTH, HEIGHT and SCREEN, each with = and a number. None if some other window
    // goes while xdotool looks at it.
    QList<int> numbers;
    const bool isKnown = waitUntil([&] {
        numbers.clear();
        for (const QString& line :
            m_desktop.xdotool(popoverWindows + u" getwindowgeometry --shell"_s).split(u'\n'))
            numbers += line.section(u'=', 1).toInt();
        return numbers.size() > 4;
    });
    return isKnown ? QRect(numbers[1], numbers[2], numbers[3], numbers[4]) : QRect();
}

QString ProgramRun::shownTranslation() const {
    const TimeBudget budget(answerLimit);
    const AtspiReference result = find([](const QString& name) { return name == u"Bản dịch"; }, budget);
    const auto text = m_accessibility.call(result, u"org.a11y.atspi.Text"_s, u"GetText"_s, {0, -1}, budget);
    return text ? text->value(0).toString() : QString();
}

QString ProgramRun::shownName(const QString& beginning) const {
    const TimeBudget budget(answerLimit);
    QString whole;
    const auto begins = [&](const QString& name) {
        whole = name;
        return name.startsWith(beginning);
    };
    return find(begins, budget).isNull() ? QString() : whole;
}

bool ProgramRun::goes(const QString& beginning, int seconds) const {
    const auto begins = [&](const QString& name) { return name.startsWith(beginning); };
    return waitUntil(
        [&] {
            const TimeBudget budget(answerLimit);
            const bool isThere = !find(begins, budget).isNull();
            const bool isAnswered = !applicationOf(processId(), {m_accessibility, budget}).isNull();
            return !isThere && isAnswered && !budget.isSpent();
        },
        seconds);
}

QRect ProgramRun::areaOf(const QString& beginning) const {
    const TimeBudget budget(answerLimit);
    AtspiReference object = find([&](const QString& name) { return name == beginning; }, budget);
    if (object.isNull())
        object = find([&](const QString& name) { return name.startsWith(beginning); }, budget);
    constexpr uint onTheScreen = 0;
    const auto extents =
        m_accessibility.call(object, u"org.a11y.atspi.Component"_s, u"GetExtents"_s, {onTheScreen}, budget);
    return extents ? qdbus_cast<QRect>(extents->value(0)) : QRect();
}

bool ProgramRun::click(const QString& beginning, int times) const {
    const auto at = [&](const QPoint& place, int button, int presses = 1) {
        m_desktop.xdotool(u"mousemove %1 %2 click --repeat %3 --delay 130 %4"_s.arg(place.x())
                              .arg(place.y())
                              .arg(presses)
                              .arg(button));
    };
    QRect area;
    const bool isInSight = waitUntil([&] {
        const QRect before = std::exchange(area, areaOf(beginning));
        constexpr int header = 52;
        constexpr int footer = 34;
        const QRect panel = popoverArea().adjusted(0, header, 0, -footer);
        // What the wheel does not move is outside the scrolling panel.
        if (!area.isValid() || panel.contains(area.center()) || area == before)
            return area.isValid();
        const bool above = area.center().y() < panel.top();
        at(panel.center(), above ? 4 : 5);
        return false;
    });
    if (!isInSight || !popoverArea().contains(area.center()))
        return false;
    at(area.center(), 1, times);
    return true;
}

bool ProgramRun::clickTrayIcon(int button) const {
    QString icon;
    QString place;
    int sinceMoved = 0;
    // A tray may move an icon that it has just received.
    const bool rests = waitUntil([&] {
        icon = trayIcon();
        const QString now = m_desktop.xdotool(u"getwindowgeometry --shell "_s + icon);
        sinceMoved = !icon.isEmpty() && std::exchange(place, now) == now ? sinceMoved + 1 : 0;
        return sinceMoved == 5;
    });
    if (rests)
        m_desktop.xdotool(u"mousemove --window %1 8 8 click %2"_s.arg(icon).arg(button));
    return rests;
}

QString ProgramRun::translateSelection() {
    const qsizetype before = m_standIn.requests().size();
    m_desktop.pressTextHotKey();
    const bool arrived = waitUntil([&] { return m_standIn.requests().size() > before; }, 5);
    return arrived ? m_standIn.requests().last().userText() : QString();
}

bool ProgramRun::translatesNothing() {
    const qsizetype before = m_standIn.requests().size();
    if (!openByHotKey())
        return false;
    // The request comes 0.13 s after the text was fetched.
    return !waitUntil([&] { return m_standIn.requests().size() > before; }, 1) && closePopover();
}

}  // namespace tralio
