#pragma once

#include <QWidget>

#include <vector>

namespace tralio {

class Badge;
class Button;
class Label;
class Reveal;
class SettingsState;
enum class HotKeyRecordTarget;

/// One hot key: its shortcut, a button that records another one, and presets.
class ShortcutBlock final : public QWidget {
    Q_OBJECT

public:
    struct Words {
        QString icon;
        QString title;
        QString description;
    };

    ShortcutBlock(
        SettingsState& state, HotKeyRecordTarget target, const Words& words, QWidget* parent = nullptr);

private:
    QLayout* titleRow(const Words& words);
    QWidget* troubleLine();
    QWidget* recordingBanner();
    QLayout* suggestions();
    void refresh();

    SettingsState& m_state;
    HotKeyRecordTarget m_target;
    Badge* m_display;
    Button* m_toggle;
    QWidget* m_troubleLine;  ///< shown only while the hot key does not work
    Label* m_trouble;
    Label* m_hint;
    Reveal* m_banner;
    std::vector<Button*> m_chips;  ///< one per preset, in their order
};

/// The blocks of both hot keys.
class ShortcutSection final : public QWidget {
    Q_OBJECT

public:
    explicit ShortcutSection(SettingsState& state, QWidget* parent = nullptr);
};

}  // namespace tralio
