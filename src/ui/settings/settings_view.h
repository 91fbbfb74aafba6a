#pragma once

#include <QWidget>

namespace tralio {

class PermissionCards;
class ScrollPanel;
class SettingsState;

/// The settings panel: scrolls through its sections, each of which shows the state and the settings and
/// stores every change at once.
class SettingsView final : public QWidget {
    Q_OBJECT

public:
    /// `state` outlives the view.
    explicit SettingsView(SettingsState& state, QWidget* parent = nullptr);

    /// Scrolls to the permission cards; the focus moves there, too, if `reason` says that the keyboard was
    /// used.
    void showPermissions(Qt::FocusReason reason);
    void showShortcuts();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QLayout* header();
    QWidget* guideStrip();
    void scrollToPermissions(int turnsLeft);

    SettingsState& m_state;
    PermissionCards* m_permissions;
    ScrollPanel* m_scroll;
};

}  // namespace tralio
