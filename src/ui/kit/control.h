#pragma once

#include <QAbstractButton>
#include <QAccessible>

class QVariantAnimation;

namespace tralio {

/// What everything clickable shares: a hover that comes at once and fades out, a focus ring for keyboard
/// focus only, Return beside Space, and a busy state that takes no clicks.
///
/// A control takes focus by the keyboard alone, so that a click on a button leaves the caret where the user
/// was writing. One that is disabled keeps the focus, and one that is hidden gives it back to the control
/// before it. Its accessible name is its title.
class Control : public QAbstractButton {
    Q_OBJECT

public:
    [[nodiscard]] const QString& title() const { return m_title; }
    void setTitle(const QString& title);

    /// What a screen reader says before the title, or alone for a control that shows only an icon.
    void setSpokenCaption(const QString& caption);

    [[nodiscard]] bool isBusy() const { return m_busy; }
    /// A busy control looks busy also when it is disabled.
    virtual void setBusy(bool busy);

    [[nodiscard]] bool showsFocusRing() const { return m_showsFocusRing; }

    /// Whether pointer, keys and screen readers do anything here.
    [[nodiscard]] bool isLive() const { return isEnabled() && !m_busy && m_live; }

    /// What it is to a screen reader.
    [[nodiscard]] virtual QAccessible::Role spokenRole() const;
    /// The state of any widget with what this one adds.
    [[nodiscard]] virtual QAccessible::State spokenState(QAccessible::State state) const;

protected:
    explicit Control(const QString& title, QWidget* parent = nullptr);

    enum class Ground {
        neutral,  ///< the window's own surfaces
        solid     ///< a strong fill under white text
    };

    /// Hover or pressed, painted over the fill of the control.
    void paintStateOverlay(QPainter& painter, const QRectF& area, qreal radius, Ground ground) const;
    /// The keyboard focus ring; on a neutral ground it stands in place of the border.
    void paintFocusRing(QPainter& painter, const QRectF& area, qreal radius, Ground ground) const;

    /// How far the hover shows, 0 to 1, for a look of its own.
    [[nodiscard]] qreal hover() const { return m_hover; }

    void setLive(bool live);

    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
    void changeEvent(QEvent* event) override;

private:
    void setHover(qreal hover);
    void updateAccessibleName();

    QString m_title;
    QString m_spokenCaption;
    QVariantAnimation* m_fade = nullptr;  ///< only while a hover fades out
    qreal m_hover = 0;
    bool m_busy = false;
    bool m_live = true;
    bool m_showsFocusRing = false;
};

}  // namespace tralio
