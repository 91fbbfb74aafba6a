#include "ui/kit/drop_target.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QWidget>

#include <utility>

namespace tralio {
namespace {

/// Always copies, whatever action the source proposes: a file must not be moved into a translator.
void acceptCopy(QDropEvent& event) {
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

}  // namespace

DropTarget::DropTarget(QWidget* widget, Handlers handlers)
    : QObject(widget), m_handlers(std::move(handlers)) {
    widget->setAcceptDrops(true);
    widget->installEventFilter(this);
}

bool DropTarget::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::DragEnter: {
            auto& drag = static_cast<QDragEnterEvent&>(*event);
            if (!drag.possibleActions().testFlag(Qt::CopyAction) || !m_handlers.accepts(*drag.mimeData())) {
                drag.ignore();
            } else {
                acceptCopy(drag);
                m_handlers.hover(true);
            }
            return true;
        }
        case QEvent::DragMove:
            acceptCopy(static_cast<QDragMoveEvent&>(*event));
            return true;
        case QEvent::DragLeave:
            m_handlers.hover(false);
            return true;
        case QEvent::Drop: {
            auto& drop = static_cast<QDropEvent&>(*event);
            m_handlers.hover(false);
            if (m_handlers.drop(*drop.mimeData()))
                acceptCopy(drop);
            else
                drop.ignore();
            return true;
        }
        default:
            return QObject::eventFilter(watched, event);
    }
}

}  // namespace tralio
