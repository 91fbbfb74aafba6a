#pragma once

#include <QWidget>

namespace tralio {

class Label;
class PromptEditor;
class Reveal;
class SettingsState;
class Switch;

/// What happens when the window opens, and the instructions for the model.
class OptionsSection final : public QWidget {
    Q_OBJECT

public:
    explicit OptionsSection(SettingsState& state, QWidget* parent = nullptr);

private:
    QLayout* autoPasteRow();
    QLayout* prompt();
    void refresh();

    SettingsState& m_state;
    Switch* m_autoPaste;
    Label* m_fromNextStart;
    Reveal* m_notYet;
    PromptEditor* m_prompt;
};

}  // namespace tralio
