#include "ui/kit/focus_order.h"

#include <QLayout>
#include <QScrollArea>
#include <QWidget>

#include "ui/kit/control.h"

namespace tralio {
namespace {

bool isStop(const QWidget& widget) {
    return widget.isVisible() && widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
}

/// The Tab stops and the focused widget, in reading order.
class FocusOrder {
public:
    explicit FocusOrder(QWidget& root) : m_current(root.window()->focusWidget()) { add(root); }

    [[nodiscard]] const QList<QWidget*>& places() const { return m_places; }
    [[nodiscard]] qsizetype current() const { return m_places.indexOf(m_current); }

private:
    void add(QWidget& widget) {
        const bool isCurrent = &widget == m_current;
        const bool holdsCurrent = m_current != nullptr && widget.isAncestorOf(m_current);
        if (!widget.isVisible() && !isCurrent && !holdsCurrent)
            return;
        if (isStop(widget) || isCurrent)
            m_places.append(&widget);
        if (widget.layout() != nullptr) {
            add(*widget.layout());
            return;
        }
        for (QObject* child : widget.children())
            if (auto* part = qobject_cast<QWidget*>(child); part != nullptr && !part->isWindow())
                add(*part);
    }

    void add(QLayout& layout) {
        for (int i = 0; i < layout.count(); ++i) {
            QLayoutItem& item = *layout.itemAt(i);
            if (item.widget() != nullptr)
                add(*item.widget());
            else if (item.layout() != nullptr)
                add(*item.layout());
        }
    }

    QWidget* m_current;
    QList<QWidget*> m_places;
};

/// Scrolls a place into sight, with the whole control that it is a part of.
void showWhole(QWidget& place) {
    QWidget* whole = &place;
    for (QWidget* owner = place.parentWidget(); owner != nullptr; owner = owner->parentWidget())
        if (qobject_cast<Control*>(owner) != nullptr)
            whole = owner;
        else if (auto* area = qobject_cast<QScrollArea*>(owner); area != nullptr)
            area->ensureWidgetVisible(whole);
}

}  // namespace

bool moveFocus(QWidget& root, bool next) {
    const FocusOrder order(root);
    const qsizetype count = order.places().size();
    const qsizetype from = order.current();
    const qsizetype start = from >= 0 ? from : (next ? count - 1 : 0);
    for (qsizetype step = 1; step <= count; ++step) {
        QWidget* place = order.places().at((start + (next ? step : count - step)) % count);
        if (isStop(*place)) {
            place->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            showWhole(*place);  // the toolkit scrolls only where the focus was in the same panel
            return true;
        }
    }
    return false;
}

}  // namespace tralio
