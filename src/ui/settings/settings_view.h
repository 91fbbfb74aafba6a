#pragma once

#include <QWidget>

namespace tralio {

class SettingsState;

/// The settings panel: scrolls through its sections, each of which shows what the state and the settings say
/// and writes every change through at once.
class SettingsView final : public QWidget {
    Q_OBJECT

public:
    /// `state` outlives the view.
    explicit SettingsView(SettingsState& state, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QLayout* header();
    QWidget* guideStrip();

    SettingsState& m_state;
};

}  // namespace tralio
