#pragma once

#include <QVariantAnimation>
#include <QWidget>

namespace tralio {

/// Shows and hides its content by animating height and opacity for 150 ms. While hidden it takes no room and
/// no spacing. If the content had the focus, that then rests on the parent.
class Reveal final : public QWidget {
    Q_OBJECT

public:
    /// Takes ownership of the content.
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
    qreal m_share = 0;  ///< fraction of the content's height that is visible
    bool m_revealed = false;
};

}  // namespace tralio
