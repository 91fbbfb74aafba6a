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

/// The bottom bar of the window: the version, which permissions are missing, and the two hot keys with
/// whether they do what they promise. What is out of order leads to where the settings are about it.
class MainFooter final : public QWidget {
    Q_OBJECT

public:
    /// What the bar tells of. All of it outlives the bar.
    struct Dependencies {
        const MainState& state;
        const AppSettings& settings;
        const HotKeys& hotKeys;
    };
    struct Actions {
        std::function<void(const Control& cause)> openPermissions;  ///< `cause` is what the user has pressed
        std::function<void()> openShortcuts;
    };

    MainFooter(Dependencies needs, const QString& version, Actions actions, QWidget* parent = nullptr);

    void refresh();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void refreshWarning();
    /// Leads to what ails the hot key of a chip.
    void open(const Chip& chip, bool granted) const;

    Dependencies m_needs;
    Actions m_actions;
    Button* m_warning;
    Chip* m_selectionChip;
    Chip* m_captureChip;
};

}  // namespace tralio
