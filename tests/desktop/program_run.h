#pragma once

#include <QRect>

#include "desktop/test_session.h"
#include "platform/linux/atspi/atspi_element.h"
#include "state/key_value_store.h"
#include "support/stand_in_model.h"

namespace tralio {

/// The first wanted object among `object` and its descendants; null if there is none.
AtspiReference findBelow(const AtspiReference& object, const AtspiQuestion& question,
    const std::function<bool(const AtspiReference&)>& isWanted);

/// The application of this process; null until that has joined the accessibility bus.
AtspiReference applicationOf(qint64 process, const AtspiQuestion& question);

/// The program, running on a virtual desktop with the stand-in as its model.
class ProgramRun final {
public:
    using Stored = std::map<QString, StoredValue>;

    /// The walk-through counts as completed, unless `stored` says otherwise.
    explicit ProgramRun(TestSession& desktop, const Stored& stored = {});

    [[nodiscard]] StandInModel& standIn() { return m_standIn; }
    [[nodiscard]] qint64 processId() const { return m_process->processId(); }
    [[nodiscard]] const QProcess& process() const { return *m_process; }
    [[nodiscard]] bool isRunning() const { return m_process->state() == QProcess::Running; }

    /// Whether the popover is on the screen.
    [[nodiscard]] bool isPopoverShown() const { return !m_desktop.xdotool(popoverWindows).isEmpty(); }
    /// Whether the popover is shown and has the focus.
    [[nodiscard]] bool isPopoverInFront() const;
    /// Wait until the popover has the focus, or is gone; return whether that happened in time.
    [[nodiscard]] bool comesToFront() const {
        return waitUntil([this] { return isPopoverInFront(); });
    }
    [[nodiscard]] bool closes(int seconds = 15) const {
        // Twice, since xdotool also finds none when some window goes while it looks.
        return waitUntil([this] { return !isPopoverShown() && !isPopoverShown(); }, seconds);
    }
    /// The window of the tray icon; empty if there is none.
    [[nodiscard]] QString trayIcon() const;
    /// The popover's rectangle on the screen.
    [[nodiscard]] QRect popoverArea() const;
    /// The text of the result, as reported to screen readers.
    [[nodiscard]] QString shownTranslation() const;
    /// The full accessible name of the first object in the popover whose name starts with `beginning`, even
    /// if it is scrolled out of sight.
    [[nodiscard]] QString shownName(const QString& beginning) const;
    [[nodiscard]] bool shows(const QString& beginning) const { return !shownName(beginning).isEmpty(); }
    /// Wait until such an object is there, or is gone; return whether that happened in time.
    [[nodiscard]] bool comes(const QString& beginning) const {
        return waitUntil([&] { return shows(beginning); });
    }
    [[nodiscard]] bool goes(const QString& beginning, int seconds = 15) const;
    /// The rectangle on the screen of the object with this name, or else one whose name starts so; invalid
    /// while it is not shown.
    [[nodiscard]] QRect areaOf(const QString& beginning) const;

    /// Clicks on the object with this name, or else one whose name starts so, once it exists; scrolls to it
    /// if necessary. Several clicks are as fast as a double click. Returns whether the popover showed it.
    [[nodiscard]] bool click(const QString& beginning, int times = 1) const;

    /// Clicks on the tray icon, once it is there, with an X button number. Returns whether it was found.
    [[nodiscard]] bool clickTrayIcon(int button = 1) const;

    /// Calls a method of the program's object on the session bus, with texts as arguments, once the program
    /// has taken earlier input. The method replies before it acts; at the return it has acted, if it does not
    /// put that off.
    void callOnBus(const QString& method, const QStringList& texts = {}) const {
        m_desktop.awaitTurnOfProgram();
        m_desktop.callOnBus(
            u"org.tralio.Tralio"_s, u"/org/tralio/Tralio"_s, u"org.tralio.Tralio."_s + method, texts);
        m_desktop.awaitTurnOfProgram();
    }

    /// Presses the text hot key and waits for a request. Returns the text that the stand-in received; a null
    /// text if none came.
    [[nodiscard]] QString translateSelection();
    /// Waits until the stand-in's last request is for `text`. Returns whether it came.
    [[nodiscard]] bool isAsked(const QString& text) const;

    /// Presses the text hot key, whose popover opens in any case, and closes that again. Returns whether no
    /// request was sent.
    [[nodiscard]] bool translatesNothing();

    /// Presses the text hot key and waits until the popover has the focus. Returns whether it does.
    [[nodiscard]] bool openByHotKey() const {
        m_desktop.pressTextHotKey();
        return comesToFront();
    }

    /// Closes the popover, so that the former application has the focus again. Returns whether it closed.
    [[nodiscard]] bool closePopover() const {
        const bool isInFront = comesToFront();
        m_desktop.xdotool(u"key Escape"_s);
        return isInFront && closes();
    }

private:
    [[nodiscard]] AtspiReference find(
        const std::function<bool(const QString&)>& isWanted, const TimeBudget& budget) const;

    static inline const auto popoverWindows = u"search --onlyvisible --name ^Tralio$"_s;

    TestSession& m_desktop;
    StandInModel m_standIn;
    AtspiBus m_accessibility;
    QProcess* m_process = nullptr;
};

}  // namespace tralio
