#pragma once

#include <QtGlobal>

namespace tralio {

/// How the present selection was made and what has happened since. Derived from the presses of keys and of
/// the left mouse button, and from the changes of PRIMARY. Times are in milliseconds on the window system's
/// clock, which wraps around to 0 after 49 days.
class SelectionHistory final {
public:
    enum class Origin { keyboard, mouse, doubleClick };

    /// `speaksAgainst` says whether this press may clear the present selection.
    void pressed(quint32 time, bool speaksAgainst);
    void released(quint32 time);
    /// PRIMARY has a new owner or text. `keysHeld` says whether keys are down at that moment.
    void marked(quint32 time, bool keysHeld);

    /// A key was pressed that may clear or change the selection.
    void keyPressed() { m_keyPressedSince = true; }

    [[nodiscard]] Origin origin() const { return m_origin; }
    [[nodiscard]] bool isPressedSince() const { return m_pressedSince; }
    [[nodiscard]] bool isKeyPressedSince() const { return m_keyPressedSince; }

private:
    bool m_everPressed = false;
    bool m_down = false;
    quint32 m_lastPress = 0;
    quint32 m_lastChange = 0;  ///< when the button was last pressed or released
    int m_clicks = 0;          ///< in quick succession
    Origin m_origin = Origin::keyboard;
    bool m_pressedSince = false;  ///< pressed where it may clear the selection
    bool m_keyPressedSince = false;
};

}  // namespace tralio
