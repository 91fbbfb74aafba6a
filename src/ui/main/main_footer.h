#pragma once

#include <QWidget>

#include <functional>

class QString;

namespace tralio {

class AppSettings;
class Button;
class Chip;
class Control;
class HotKeys;
class MainState;

/// The bottom bar of the window: the version, missing permissions, and both hot keys with whether they work.
/// A click on what does not work opens the settings for it.
class MainFooter final : public QWidget {
    Q_OBJECT

public:
    /// What the bar shows. All of it outlives the bar.
    struct Dependencies {
        const MainState& state;
        const AppSettings& settings;
        const HotKeys& hotKeys;
    };
    struct Actions {
        /// `cause` is the control that the user pressed.
        std::function<void(const Control& cause)> openPermissions;
        std::function<void()> openShortcuts;
    };

    MainFooter(Dependencies needs, const QString& version, Actions actions, QWidget* parent = nullptr);

    void refresh();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void refreshWarning();
    /// Opens the settings for what is wrong with the hot key of a chip.
    void open(const Chip& chip, bool granted) const;

    Dependencies m_needs;
    Actions m_actions;
    Button* m_warning;
    Chip* m_selectionChip;
    Chip* m_captureChip;
};

}  // namespace tralio
