#pragma once

#include <QWidget>

namespace tralio {

class Button;
class IconView;
class Label;
class SettingsState;
class Surface;

/// What the desktop lets the program do, in green, or in red with a button that asks for it.
class PermissionCard final : public QWidget {
    Q_OBJECT

public:
    struct Words {
        QString title;
        QString line;
    };

    PermissionCard(const Words& granted, const Words& missing, QWidget* parent = nullptr);

    void setGranted(bool granted);
    /// Gives the keyboard to the button that asks, where there is one.
    bool focusRequest();

Q_SIGNALS:
    void requested();

private:
    Words m_grantedWords;
    Words m_missingWords;
    Surface* m_surface;
    IconView* m_icon;
    Label* m_title;
    Label* m_line;
    Button* m_request;
};

/// Both permissions.
class PermissionCards final : public QWidget {
    Q_OBJECT

public:
    explicit PermissionCards(SettingsState& state, QWidget* parent = nullptr);

    /// Gives the keyboard to the first button that asks for a permission.
    void focusRequest();

private:
    void refresh();

    SettingsState& m_state;
    PermissionCard* m_accessibility;
    PermissionCard* m_screenCapture;
};

}  // namespace tralio
