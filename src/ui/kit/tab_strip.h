#pragma once

#include <QList>
#include <QVariantAnimation>
#include <QWidget>

namespace tralio {

struct TabItem {
    QString iconName;
    QString label;
};

/// A row of tabs, one of which is selected. The selected shape slides to a newly selected tab. The strip is
/// one Tab stop; the arrow keys move between the tabs and select.
class TabStrip final : public QWidget {
    Q_OBJECT

public:
    explicit TabStrip(const QList<TabItem>& tabs, QWidget* parent = nullptr);

    [[nodiscard]] int current() const { return m_current; }
    /// Selects a tab without emitting `selected`.
    void setCurrent(int index);

    /// Whether the user is moving along the tabs of a window by keyboard: a panel that appears then must not
    /// take the focus.
    [[nodiscard]] static bool isWalked(const QWidget& window);

Q_SIGNALS:
    /// The user has chosen a tab.
    void selected(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    class Tab;

    void check(int index);
    void slideTo(int index);
    void setShape(const QRectF& shape);

    QList<Tab*> m_tabs;
    QVariantAnimation m_slide;
    QRectF m_shape;  ///< of the selection, in the strip's coordinates
    int m_current = 0;
    bool m_isWalked = false;
};

}  // namespace tralio
