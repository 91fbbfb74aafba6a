#pragma once

#include <QVariantAnimation>
#include <QWidget>

namespace tralio {

/// Lets its content appear and leave: height and opacity in 150 ms. Hidden, it takes no room and no spacing.
/// The keyboard, if it was there, rests then on what the content stood on.
class Reveal final : public QWidget {
    Q_OBJECT

public:
    /// Takes the content over.
    explicit Reveal(QWidget* content, QWidget* parent = nullptr);

    [[nodiscard]] bool isRevealed() const { return m_revealed; }
    void setRevealed(bool revealed);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    [[nodiscard]] int contentHeight(int width) const;
    void setShare(qreal share);
    void finish();

    QWidget* m_content;
    QVariantAnimation m_animation;
    qreal m_share = 0;  ///< of the content's height that shows
    bool m_revealed = false;
};

}  // namespace tralio
