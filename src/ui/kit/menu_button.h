#pragma once

#include <QPointer>

#include "ui/kit/control.h"
#include "ui/kit/popup_menu.h"
#include "ui/kit/text_style.h"

namespace tralio {

/// A label with a chevron that opens a menu: when the mouse is pressed, so that one gesture of press, drag
/// and release chooses an entry; or with Space, Return, Up or Down.
class MenuButton final : public Control {
    Q_OBJECT

public:
    explicit MenuButton(
        const TextStyle& style = text::menu, const QString& iconName = {}, QWidget* parent = nullptr);
    ~MenuButton() override;

    /// Gives it the look of a bordered button and the free width of its row.
    void becomePicker();

    void setEntries(const QList<MenuEntry>& entries);
    /// The edge of the button with which the menu is aligned.
    void setMenuAlignment(Qt::Alignment alignment) { m_alignment = alignment; }
    [[nodiscard]] PopupMenu* openMenu() const { return m_menu; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::ButtonMenu; }
    [[nodiscard]] QAccessible::State spokenState(QAccessible::State state) const override;

Q_SIGNALS:
    void chosen(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void open();

    TextStyle m_style;
    QString m_iconName;
    bool m_isPicker = false;
    QList<MenuEntry> m_entries;
    Qt::Alignment m_alignment = Qt::AlignLeft;
    QPointer<PopupMenu> m_menu;
};

}  // namespace tralio
