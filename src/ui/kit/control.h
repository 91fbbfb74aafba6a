#pragma once

#include <QAbstractButton>
#include <QAccessible>

class QVariantAnimation;

namespace tralio {

/// Base of everything clickable: a hover that appears at once and fades out, a focus ring for keyboard focus
/// only, Return as well as Space, and a busy state that ignores clicks.
///
/// Controls take the focus from the keyboard only, so that a click leaves the caret where the user was
/// writing. A control keeps the focus when it is disabled; when it is hidden, the focus goes to the control
/// before it. The accessible name is the title.
class Control : public QAbstractButton {
    Q_OBJECT

public:
    [[nodiscard]] const QString& title() const { return m_title; }
    void setTitle(const QString& title);

    /// What a screen reader reads before the title; the whole name of a control that shows only an icon.
    void setSpokenCaption(const QString& caption);

    [[nodiscard]] bool isBusy() const { return m_busy; }
    /// A busy control looks busy even if it is disabled.
    virtual void setBusy(bool busy);

    [[nodiscard]] bool showsFocusRing() const { return m_showsFocusRing; }

    /// Whether pointer, keys and screen readers can trigger it.
    [[nodiscard]] bool isLive() const { return isEnabled() && !m_busy && m_live; }

    /// Its accessible role.
    [[nodiscard]] virtual QAccessible::Role spokenRole() const;
    /// `state`, as of any widget, completed with the control's own state.
    [[nodiscard]] virtual QAccessible::State spokenState(QAccessible::State state) const;

protected:
    explicit Control(const QString& title, QWidget* parent = nullptr);

    enum class Ground {
        neutral,  ///< the window's own surfaces
        solid     ///< a strong fill under white text
    };

    /// Paints the hover or pressed overlay over the control's fill.
    void paintStateOverlay(QPainter& painter, const QRectF& area, qreal radius, Ground ground) const;
    /// Paints the keyboard focus ring; on a neutral ground it replaces the border.
    void paintFocusRing(QPainter& painter, const QRectF& area, qreal radius, Ground ground) const;

    /// The strength of the hover, 0 to 1, for controls that paint their own.
    [[nodiscard]] qreal hover() const { return m_hover; }

    void setLive(bool live);

    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void setHover(qreal hover);
    void updateAccessibleName();

    QString m_title;
    QString m_spokenCaption;
    QVariantAnimation* m_fade = nullptr;  ///< only while the hover fades out
    qreal m_hover = 0;
    bool m_busy = false;
    bool m_live = true;
    bool m_showsFocusRing = false;
};

}  // namespace tralio
