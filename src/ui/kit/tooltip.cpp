#include "ui/kit/tooltip.h"

#include <QBasicTimer>
#include <QEvent>
#include <QPointer>
#include <QTimerEvent>
#include <QWidget>

#include <algorithm>
#include <utility>

#include "ui/kit/label.h"
#include "ui/kit/painting.h"
#include "ui/kit/stack.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

constexpr int delay = 600;  // milliseconds
constexpr int paddingAcross = 8;
constexpr int paddingAlong = 4;
constexpr int tooltipDistance = 6;  // from the widget
constexpr int tooltipInset = 6;

/// A child of the widget's window: needs no compositor and takes no focus.
class Bubble final : public QWidget {
public:
    Bubble(QWidget& target, const QString& text) : QWidget(target.window()) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        auto* label = new Label(text, text::caption, ColorRole::tooltipText);
        filled(
            this, column({.padding = {paddingAcross, paddingAlong, paddingAcross, paddingAlong}}, {label}));
        const QRect room =
            parentWidget()->rect().adjusted(tooltipInset, tooltipInset, -tooltipInset, -tooltipInset);
        const int wanted = textWidth(text::caption, text) + 2 * paddingAcross;
        const int width = std::min(wanted, room.width());
        if (width < wanted)
            label->setWraps();  // else its exact width would break some texts, by the last letter's overhang
        const QSize size(width, label->heightForWidth(width - 2 * paddingAcross) + 2 * paddingAlong);
        const QRect anchor(target.mapTo(parentWidget(), QPoint()), target.size());
        QRect place({anchor.center().x() - size.width() / 2, anchor.bottom() + 1 + tooltipDistance}, size);
        if (place.bottom() > room.bottom())
            place.moveBottom(anchor.top() - 1 - tooltipDistance);
        place.moveLeft(std::max(room.left(), std::min(place.left(), room.right() + 1 - size.width())));
        setGeometry(place);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintFill(painter, rect(), radius::control, color(ColorRole::tooltip));
    }
};

/// Watches all widgets that have a tooltip; the pointer is over one at a time.
class Watcher final : public QObject {
public:
    static Watcher& shared() {
        static Watcher watcher;
        return watcher;
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* widget = qobject_cast<QWidget*>(watched);
        switch (event->type()) {
            case QEvent::Enter:
                m_target = widget;
                m_timer.start(delay, this);
                break;
            case QEvent::Leave:
            case QEvent::Hide:
            case QEvent::MouseButtonPress:
            case QEvent::KeyPress:
            case QEvent::Wheel:
                if (widget == m_target)
                    dismiss();
                break;
            case QEvent::ToolTipChange:
                if (m_bubble && widget == m_target)
                    show();
                break;
            case QEvent::ToolTip:
                return true;  // else Qt would show its own tooltip as well
            default:
                break;
        }
        return QObject::eventFilter(watched, event);
    }

protected:
    void timerEvent(QTimerEvent*) override {
        m_timer.stop();
        show();
    }

private:
    void show() {
        removeBubble();
        if (m_target && m_target->isVisible() && !m_target->toolTip().isEmpty()) {
            m_bubble = new Bubble(*m_target, m_target->toolTip());
            m_bubble->show();
            m_bubble->raise();
        }
    }

    void dismiss() {
        m_target = nullptr;
        removeBubble();
    }

    /// Deleted later, since the window may be hiding its children right now, the bubble among them.
    void removeBubble() {
        if (QWidget* bubble = std::exchange(m_bubble, nullptr)) {
            bubble->hide();
            bubble->deleteLater();
        }
    }

    QBasicTimer m_timer;
    QPointer<QWidget> m_target;
    QPointer<QWidget> m_bubble;
};

}  // namespace

void setTooltip(QWidget* widget, const QString& text) {
    // A widget that shows only an icon is named by its tooltip.
    if (widget->accessibleName().isEmpty() || widget->accessibleName() == widget->toolTip())
        widget->setAccessibleName(text);
    widget->setToolTip(text);
    widget->removeEventFilter(&Watcher::shared());
    widget->installEventFilter(&Watcher::shared());
}

}  // namespace tralio
