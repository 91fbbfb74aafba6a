#pragma once

#include <QWidget>

#include "ui/kit/colors.h"
#include "ui/kit/text_style.h"
#include "ui/kit/theme.h"

namespace tralio {

/// Dimensions (in logical pixels) and colours of one kind of badge.
struct BadgeStyle {
    int height;
    int padding;
    int radius;
    TextStyle text;
    ColorRole fill;
    ColorRole color;
    ColorRole edge = ColorRole::none;
};

namespace badge {

inline constexpr BadgeStyle shortcut{
    22, 8, radius::small, text::menu.with(Weight::bold), ColorRole::accentBadge, ColorRole::accentText};
inline constexpr BadgeStyle language{
    18, 6, radius::chip, text::smallCaption.with(Weight::bold), ColorRole::accentBadge, ColorRole::text};
inline constexpr BadgeStyle version{20, 6, radius::chip, text::caption.with(Weight::semibold),
    ColorRole::control, ColorRole::secondary, ColorRole::hairline};
inline constexpr BadgeStyle granted{18, 6, radius::chip, text::smallCaption.with(Weight::heavy),
    ColorRole::greenStatusBadge, ColorRole::green};
inline constexpr BadgeStyle missing{
    18, 6, radius::chip, text::smallCaption.with(Weight::heavy), ColorRole::redStatusBadge, ColorRole::red};
/// "Mới", beside the title of an offer.
inline constexpr BadgeStyle offer{12, 4, radius::tiny, text::tiny, ColorRole::greenBadge, ColorRole::green};

}  // namespace badge

/// A word on a small tinted shape. Not interactive; shortened with an ellipsis where its row is too narrow.
class Badge final : public QWidget {
    Q_OBJECT

public:
    Badge(const BadgeStyle& style, const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] const QString& text() const { return m_text; }
    void setText(const QString& text);
    void setStyle(const BadgeStyle& style);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void changed();

    BadgeStyle m_style;
    QString m_text;
};

}  // namespace tralio
