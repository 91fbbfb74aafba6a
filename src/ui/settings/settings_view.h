#pragma once

#include <QWidget>

namespace tralio {

class PermissionCards;
class ScrollPanel;
class SettingsState;

/// The settings panel: scrolls through its sections, each of which shows what the state and the settings say
/// and writes every change through at once.
class SettingsView final : public QWidget {
    Q_OBJECT

public:
    /// `state` outlives the view.
    explicit SettingsView(SettingsState& state, QWidget* parent = nullptr);

    /// Scrolls to the cards of the permissions, which the keyboard follows if it is the keyboard that asks.
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
