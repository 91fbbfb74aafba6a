#pragma once

#include <QObject>

#include <functional>

class QMimeData;
class QWidget;

namespace tralio {

/// Lets a widget accept drags of the kinds that `accepts` returns, also over its children, which get the drag
/// first. Owned by the widget.
class DropTarget final : public QObject {
public:
    struct Handlers {
        std::function<bool(const QMimeData&)> accepts;
        /// True: an acceptable drag has entered; false: it has left or was dropped.
        std::function<void(bool)> hover;
        std::function<bool(const QMimeData&)> drop;  ///< returns whether the content was usable
    };

    DropTarget(QWidget* widget, Handlers handlers);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Handlers m_handlers;
};

}  // namespace tralio
