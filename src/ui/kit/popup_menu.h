#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>

namespace tralio {

struct MenuEntry {
    QString title;
    bool checked = false;
    bool enabled = true;
};

/// A menu in a child widget that covers the whole window of its anchor. So it needs no window, grab or
/// compositor of its own, and the window stays active. A click beside the menu only closes it.
///
/// Up and Down move, Home and End jump, Return and Space choose, Escape and Tab close. The focus then returns
/// to where it was. The menu deletes itself when it is closed for any reason.
class PopupMenu final : public QWidget {
    Q_OBJECT

public:
    /// Opens a menu below `anchor`, aligned with its left or right edge, or above it where there is no room
    /// below. `anchor` is in the coordinates of `owner`. `selected` is the initially highlighted entry; -1
    /// for none.
    static PopupMenu* open(QWidget* owner, const QRect& anchor, const QList<MenuEntry>& entries, int selected,
        Qt::Alignment alignment = Qt::AlignLeft);

    /// Follows the pointer of the button that opened the menu and still has the mouse grab.
    void dragTo(const QPoint& globalPosition);
    /// Chooses the entry under the pointer, if any.
    void releaseAt(const QPoint& globalPosition);

    void close();
    /// Closes what belongs to a widget that is being destroyed, perhaps along with what had the focus.
    void closeWithOwner();

Q_SIGNALS:
    void chosen(int index);
    void closed();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Item;

    PopupMenu(QWidget* owner, const QRect& anchor, const QList<MenuEntry>& entries, Qt::Alignment alignment);
    [[nodiscard]] QRect place(const QRect& anchor, const QSize& size, Qt::Alignment alignment) const;
    [[nodiscard]] Item* itemAt(const QPoint& globalPosition) const;
    void mark(Item* item);
    void move(int from, int step);
    void choose(int index);

    QList<Item*> m_items;
    QPointer<Item> m_marked;
    QPointer<QWidget> m_formerFocus;
    QRect m_panel;
    bool m_closing = false;
};

}  // namespace tralio
