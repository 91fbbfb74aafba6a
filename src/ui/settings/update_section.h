#pragma once

#include <QWidget>

namespace tralio {

class Button;
class Label;
class SettingsState;
class Spinner;
class Surface;
class UpdateService;

/// The running version, the check for a newer one, and its installation.
class UpdateSection final : public QWidget {
    Q_OBJECT

public:
    explicit UpdateSection(SettingsState& state, QWidget* parent = nullptr);

private:
    QLayout* heading();
    QWidget* statusRow();
    QWidget* releaseNotes();
    [[nodiscard]] QString status() const;
    void refresh();

    SettingsState& m_state;
    UpdateService& m_updates;
    Label* m_status;
    Spinner* m_checkSpinner;
    Spinner* m_updateSpinner;
    Label* m_percentage;
    Button* m_install;
    Button* m_check;
    Button* m_resting = nullptr;  ///< had the keyboard when it was hidden last
    Surface* m_notes;
    Label* m_notesTitle;
    Label* m_notesText;
};

}  // namespace tralio
