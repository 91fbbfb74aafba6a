#pragma once

#include <QRect>

#include "desktop/test_session.h"
#include "platform/linux/atspi/atspi_element.h"
#include "state/key_value_store.h"
#include "support/stand_in_model.h"

namespace tralio {

/// The first object of those at or below `object` that is wanted; null where none is.
AtspiReference findBelow(const AtspiReference& object, const AtspiQuestion& question,
    const std::function<bool(const AtspiReference&)>& isWanted);

/// The application of this process; null until that has joined the accessibility bus.
AtspiReference applicationOf(qint64 process, const AtspiQuestion& question);

/// The program, running on a virtual desktop with the stand-in as its model.
class ProgramRun final {
public:
    using Stored = std::map<QString, StoredValue>;

    /// Its user has been through the walk-through, unless something else is stored.
    explicit ProgramRun(TestSession& desktop, const Stored& stored = {});

    [[nodiscard]] StandInModel& standIn() { return m_standIn; }
    [[nodiscard]] qint64 processId() const { return m_process->processId(); }
    [[nodiscard]] const QProcess& process() const { return *m_process; }
    [[nodiscard]] bool isRunning() const { return m_process->state() == QProcess::Running; }

    /// Whether the popover is on the screen.
    [[nodiscard]] bool isPopoverShown() const { return !m_desktop.xdotool(popoverWindows).isEmpty(); }
    /// Whether it also has the keyboard.
    [[nodiscard]] bool isPopoverInFront() const;
    /// Whether it comes to have the keyboard, or is gone within this time.
    [[nodiscard]] bool comesToFront() const {
        return waitUntil([this] { return isPopoverInFront(); });
    }
    [[nodiscard]] bool closes(int seconds = 15) const {
        return waitUntil([this] { return !isPopoverShown(); }, seconds);
    }
    /// The window of the icon in the tray; empty while there is none.
    [[nodiscard]] QString trayIcon() const;
    /// Where the popover is on the screen.
    [[nodiscard]] QRect popoverArea() const;
    /// The text of the popover's result, as a screen reader gets it.
    [[nodiscard]] QString shownTranslation() const;
    /// The whole name of what has a name in the popover that begins so, be it scrolled out of sight.
    [[nodiscard]] QString shownName(const QString& beginning) const;
    [[nodiscard]] bool shows(const QString& beginning) const { return !shownName(beginning).isEmpty(); }
    /// Whether it comes to be shown, or to be shown no more.
    [[nodiscard]] bool comes(const QString& beginning) const {
        return waitUntil([&] { return shows(beginning); });
    }
    [[nodiscard]] bool goes(const QString& beginning) const {
        return waitUntil([&] { return !shows(beginning); });
    }

    /// Clicks with the mouse on what has this name, or else a name that begins so, once it is there,
    /// scrolling to it where it is out of sight, as often as told, and as quick as a double click; whether it
    /// came.
    [[nodiscard]] bool click(const QString& beginning, int times = 1) const;

    /// Clicks on the icon in the tray, once it is there, with a button as X numbers them; whether it came.
    [[nodiscard]] bool clickTrayIcon(int button = 1) const;

    /// Calls a method of the program's object on the session bus with texts.
    void callOnBus(const QString& method, const QStringList& texts = {}) const {
        m_desktop.callOnBus(
            u"org.tralio.Tralio"_s, u"/org/tralio/Tralio"_s, u"org.tralio.Tralio."_s + method, texts);
    }

    /// Presses the text hot key and waits for the request that comes of it; the text that arrived at the
    /// stand-in, or a null text when none came.
    [[nodiscard]] QString translateSelection();
    /// Whether this is what the stand-in comes to be asked for last.
    [[nodiscard]] bool isAsked(const QString& text) const;

    /// Presses the text hot key, whose popover opens in any case, and closes that again; whether no request
    /// came of it.
    [[nodiscard]] bool translatesNothing();

    /// Presses the text hot key and waits until the popover has the keyboard; whether it comes.
    [[nodiscard]] bool openByHotKey() const {
        m_desktop.pressTextHotKey();
        return comesToFront();
    }

    /// Closes the popover, so that the application before it has the keyboard again; whether it closes.
    [[nodiscard]] bool closePopover() const {
        m_desktop.xdotool(u"key Escape"_s);
        return closes();
    }

private:
    /// Where what has this name, or else one that begins so, is on the screen; not valid while it is not
    /// shown.
    [[nodiscard]] QRect areaOf(const QString& beginning) const;
    [[nodiscard]] AtspiReference find(
        const std::function<bool(const QString&)>& isWanted, const TimeBudget& budget) const;

    static inline const auto popoverWindows = u"search --onlyvisible --name ^Tralio$"_s;

    TestSession& m_desktop;
    StandInModel m_standIn;
    AtspiBus m_accessibility;
    QProcess* m_process = nullptr;
};

}  // namespace tralio
