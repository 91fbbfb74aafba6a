#include "platform/linux/selection/selection_history.h"

namespace tralio {
namespace {

constexpr quint32 doubleClickTime = 500;
/// In milliseconds. Programs announce a selection some time after the mouse has made it.
constexpr quint32 markingTime = 1000;

}  // namespace

void SelectionHistory::pressed(quint32 time, bool speaksAgainst) {
    m_clicks = m_everPressed && time - m_lastPress < doubleClickTime ? m_clicks + 1 : 1;
    m_everPressed = true;
    m_down = true;
    m_lastPress = time;
    m_lastChange = time;
    m_pressedSince = m_pressedSince || speaksAgainst;
}

void SelectionHistory::released(quint32 time) {
    m_down = false;
    m_lastChange = time;
}

void SelectionHistory::marked(quint32 time, bool keysHeld) {
    const bool byMouse = !keysHeld && m_everPressed && (m_down || time - m_lastChange < markingTime);
    m_origin = !byMouse ? Origin::keyboard : m_clicks > 1 ? Origin::doubleClick : Origin::mouse;
    m_pressedSince = false;
    m_keyPressedSince = false;
}

}  // namespace tralio
