#pragma once

#include <QWidget>

namespace tralio {

class Button;
class IconView;
class Label;
class SettingsState;
class Surface;

/// A permission: green if granted, else red with a button that requests it.
class PermissionCard final : public QWidget {
    Q_OBJECT

public:
    struct Words {
        QString title;
        QString line;
    };

    PermissionCard(const Words& granted, const Words& missing, QWidget* parent = nullptr);

    void setGranted(bool granted);
    [[nodiscard]] bool isGranted() const;

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

/// The cards of both permissions.
class PermissionCards final : public QWidget {
    Q_OBJECT

public:
    explicit PermissionCards(SettingsState& state, QWidget* parent = nullptr);

    /// Focuses the first card whose permission is missing, not its button: the press that led here may come
    /// twice.
    void focusMissing();

private:
    void refresh();

    SettingsState& m_state;
    PermissionCard* m_accessibility;
    PermissionCard* m_screenCapture;
};

}  // namespace tralio
