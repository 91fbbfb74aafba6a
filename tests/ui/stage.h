#pragma once

#include "ui/program_on_fakes.h"
#include "ui/widget_support.h"

namespace tralio {

/// The main view in its window on a backdrop, over a desktop of fakes and a stand-in for the model, and the
/// hands of a user before it. Nothing in it depends on the machine, the network or the time of day: the
/// stand-in is reached as a proxy, so that its port does not show in the settings.
class Stage : public ProgramOnFakes {
public:
    Stage();
    ~Stage();

    /// Shows the main view. What the program finds is to be set before.
    void open();
    /// The main view goes, as at the end of the program.
    void close() { m_backdrop.reset(); }

    // What the user does. Every one of these returns when the window shows what follows from it.

    void type(const QString& text);
    /// Presses the keys, one after the other.
    void press(auto... keys) { (pressKey(keys), ...); }
    /// Clicks the first visible control with each title, or called so by screen readers.
    void click(const auto&... names) { (clickControl(names), ...); }

    [[nodiscard]] QList<Control*> controls(const QString& name) const;
    [[nodiscard]] bool hasControl(const QString& name) const { return !controls(name).isEmpty(); }
    /// The first part of a kind.
    template <typename Part>
    [[nodiscard]] Part* find() const {
        return m_backdrop->findChild<Part*>();
    }
    /// The first visible part of a kind that is as wanted; null without one.
    template <typename Part, typename Wanted>
    [[nodiscard]] Part* part(Wanted wanted) const {
        for (Part* part : visibleParts<Part>(*m_backdrop))
            if (wanted(*part))
                return part;
        return nullptr;
    }
    /// What the visible labels say.
    [[nodiscard]] QStringList texts() const { return textsIn(*m_backdrop); }
    template <typename Condition>
    void wait(Condition condition) {
        if (!eventually(condition))
            qFatal("What the stage waits for never happens");
        settle();
    }
    /// Lets the window show what has changed.
    void settle();

    QList<QUrl> opened;  ///< by the main view, for the desktop to show
    int quits = 0;       ///< how often it asked for the end of the program

    [[nodiscard]] QWidget& window() const { return *m_backdrop; }

private:
    void pressKey(Qt::Key key);
    void clickControl(const QString& name);

    std::unique_ptr<QWidget> m_backdrop;
};

}  // namespace tralio
