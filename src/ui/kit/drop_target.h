#pragma once

#include <QObject>

#include <functional>

class QMimeData;
class QWidget;

namespace tralio {

/// Lets a widget, with all that stands on it, take drags of the kinds that `accepts` names. What stands on it
/// has the first choice. Belongs to the widget.
class DropTarget final : public QObject {
public:
    struct Handlers {
        std::function<bool(const QMimeData&)> accepts;
        std::function<void(bool)> hover;  ///< a drag that may be dropped has come, or has left or was dropped
        std::function<bool(const QMimeData&)> drop;  ///< whether the content was of use
    };

    DropTarget(QWidget* widget, Handlers handlers);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Handlers m_handlers;
};

}  // namespace tralio
