#include "platform/linux/selection/own_copies.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tralio {

OwnCopies::OwnCopies() {
    const QClipboard* clipboard = QGuiApplication::clipboard();
    connect(clipboard, &QClipboard::dataChanged, this, [this, clipboard] {
        if (clipboard->ownsClipboard())
            m_text = clipboard->text();
    });
}

}  // namespace tralio
