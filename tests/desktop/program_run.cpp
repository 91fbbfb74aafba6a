#include "desktop/program_run.h"

#include <QDir>

#include <stdexcept>
#include <utility>

#include "platform/linux/atspi/atspi_element.h"
#include "state/sqlite_key_value_store.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int answerLimit = 1000;  // milliseconds

/// The first shown object at or below `object` with a name that is wanted.
AtspiReference findByName(const AtspiReference& object, const std::function<bool(const QString&)>& isWanted,
    const AtspiQuestion& question) {
    if (isWanted(nameOf(object, question)) && statesOf(object, question).contains(AtspiState::showing))
        return object;
    for (const AtspiReference& child : childrenOf(object, question))
        if (const AtspiReference found = findByName(child, isWanted, question); !found.isNull())
            return found;
    return {};
}

}  // namespace

ProgramRun::ProgramRun(TestSession& desktop, Start start) : m_desktop(desktop) {
    {
        SqliteKeyValueStore store(desktop.home() + u"/.local/share/tralio/tralio.sqlite"_s);
        store.setValue(u"app_setting_base_url"_s, m_standIn.baseURL());
        store.setValue(u"hasCompletedOnboarding"_s, start == Start::usual);
    }
    m_process = &desktop.start(QStringLiteral(TRALIO_PROGRAM));
    m_accessibility.open();
    // It joins the accessibility bus from its event loop, and its hot keys are registered before that.
    const bool ready =
        waitUntil([this] { return isRunning() && !applicationObject(TimeBudget(answerLimit)).isNull(); });
    if (!ready)
        throw std::runtime_error("tralio does not start");
}

bool ProgramRun::isPopoverShown() const {
    return !m_desktop.run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Tralio$"_s})
                .isEmpty();
}

bool ProgramRun::isPopoverInFront() const {
    // Some time after it has closed the window manager still names it.
    return isPopoverShown() &&
        m_desktop.run(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s}) == u"Tralio";
}

AtspiReference ProgramRun::applicationObject(const TimeBudget& budget) const {
    for (const AtspiReference& application : childrenOf(AtspiBus::desktop(), {m_accessibility, budget}))
        if (m_accessibility.processOf(application.service, budget) == processId())
            return application;
    return {};
}

AtspiReference ProgramRun::find(
    const std::function<bool(const QString&)>& isWanted, const TimeBudget& budget) const {
    return findByName(applicationObject(budget), isWanted, {m_accessibility, budget});
}

QString ProgramRun::trayIcon() const {
    const auto windows = [this](const QString& by, const QString& what) {
        return m_desktop.run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, by, what}).split(u'\n');
    };
    const QStringList popovers = windows(u"--name"_s, u"^Tralio$"_s);
    for (const QString& window : windows(u"--class"_s, u"^tralio$"_s))
        if (!popovers.contains(window))
            return window;
    return {};
}

QRect ProgramRun::popoverArea() const {
    // X=…, Y=…, WIDTH=…, HEIGHT=…, a line each.
    const QString geometry = m_desktop.run(u"xdotool"_s,
        {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Tralio$"_s, u"getwindowgeometry"_s, u"--shell"_s});
    const auto number = [&geometry](QStringView name) {
        const qsizetype start = geometry.indexOf(u'\n' + name.toString() + u'=') + name.size() + 2;
        return geometry.mid(start, geometry.indexOf(u'\n', start) - start).toInt();
    };
    return {number(u"X"), number(u"Y"), number(u"WIDTH"), number(u"HEIGHT")};
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

bool ProgramRun::click(const QString& beginning) const {
    const auto at = [&](const QPoint& place, const QString& button) {
        m_desktop.run(u"xdotool"_s,
            {u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"click"_s, button});
    };
    QRect area;
    const bool isInSight = waitUntil([&] {
        const QRect before = std::exchange(area, areaOf(beginning));
        constexpr int header = 52;
        constexpr int footer = 34;
        const QRect panel = popoverArea().adjusted(0, header, 0, -footer);
        // What the wheel does not move is not in the panel that scrolls.
        if (!area.isValid() || panel.contains(area.center()) || area == before)
            return area.isValid();
        const bool above = area.center().y() < panel.top();
        at(panel.center(), above ? u"4"_s : u"5"_s);
        return false;
    });
    if (isInSight)
        at(area.center(), u"1"_s);
    return isInSight;
}

bool ProgramRun::clickTrayIcon(int button) const {
    QString icon;
    QString place;
    int sinceMoved = 0;
    // A tray moves an icon that it has just got.
    const bool rests = waitUntil([&] {
        icon = trayIcon();
        const QString now = m_desktop.run(u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, icon});
        sinceMoved = !icon.isEmpty() && std::exchange(place, now) == now ? sinceMoved + 1 : 0;
        return sinceMoved == 5;
    });
    if (!rests)
        return false;
    m_desktop.run(u"xdotool"_s,
        {u"mousemove"_s, u"--window"_s, icon, u"8"_s, u"8"_s, u"click"_s, QString::number(button)});
    return true;
}

void ProgramRun::callOnBus(const QString& method, const QStringList& texts) const {
    m_desktop.callOnBus(
        u"org.tralio.Tralio"_s, u"/org/tralio/Tralio"_s, u"org.tralio.Tralio."_s + method, texts);
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
    // A text that was fetched is asked for 0.13 s after that.
    return !waitUntil([&] { return m_standIn.requests().size() > before; }, 1) && closePopover();
}

bool ProgramRun::openByHotKey() const {
    m_desktop.pressTextHotKey();
    return waitUntil([this] { return isPopoverInFront(); });
}

bool ProgramRun::closePopover() const {
    m_desktop.run(u"xdotool"_s, {u"key"_s, u"Escape"_s});
    return waitUntil([this] { return !isPopoverShown(); });
}

}  // namespace tralio
