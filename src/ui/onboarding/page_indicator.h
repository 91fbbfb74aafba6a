#pragma once

#include <QVariantAnimation>
#include <QWidget>

namespace tralio {

/// A row of capsules, one per page. That of the current page is long and in the accent colour, and grows
/// while the former one shrinks.
class PageIndicator final : public QWidget {
    Q_OBJECT

public:
    explicit PageIndicator(int pages, QWidget* parent = nullptr);

    void setCurrent(int page);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void setPosition(qreal position);
    void updateAccessibleName(int page);

    int m_pages;
    QVariantAnimation m_slide;
    qreal m_position = 0;  ///< the current page, or between two pages during the animation
};

}  // namespace tralio
