#pragma once

#include "ui/kit/control.h"
#include "ui/kit/icon.h"
#include "ui/kit/text_style.h"
#include "ui/kit/theme.h"

namespace tralio {

class Spinner;

/// Dimensions (in logical pixels) and colours of one kind of button.
struct ButtonStyle {
    int height;
    int padding;
    int gap = 4;  ///< between icon and title
    int radius = radius::control;
    TextStyle text = text::caption;
    int iconSize = 11;  ///< point size
    ColorRole fill = ColorRole::none;
    ColorRole edge = ColorRole::none;
    ColorRole color = ColorRole::text;
    ColorRole iconColor = ColorRole::none;  ///< `none`: as the title's
    int spinner = 14;
    bool boldIcon = false;
    bool iconTrails = false;              ///< the icon stands after the title
    ColorRole fillEnd = ColorRole::none;  ///< the colour at the right end of a gradient; `none`: no gradient

    /// White text on a strong fill, which has a hover, a focus ring, and disabled and busy looks of its own.
    [[nodiscard]] constexpr bool isSolid() const { return color == ColorRole::onFill; }
};

namespace button {

inline constexpr ButtonStyle main{.height = 32,
    .padding = 16,
    .gap = 6,
    .radius = radius::block,
    .text = text::body.with(Weight::medium),
    .iconSize = 13,
    .fill = ColorRole::accentFill,
    .color = ColorRole::onFill};
inline constexpr ButtonStyle mainSmall{.height = 24,
    .padding = 10,
    .text = text::caption.with(Weight::medium),
    .fill = ColorRole::accentFill,
    .color = ColorRole::onFill};
inline constexpr ButtonStyle redSmall{.height = 24,
    .padding = 10,
    .text = text::caption.with(Weight::medium),
    .fill = ColorRole::redFill,
    .color = ColorRole::onFill};
inline constexpr ButtonStyle banner{.height = 21,
    .padding = 8,
    .radius = radius::small,
    .text = text::smallCaption.with(Weight::bold),
    .iconSize = 10,
    .fill = ColorRole::accentFill,
    .color = ColorRole::onFill,
    .spinner = 12};
/// "Hủy", beside a primary button.
inline constexpr ButtonStyle borderedTall{.height = 32,
    .padding = 16,
    .gap = 6,
    .radius = radius::block,
    .text = text::body.with(Weight::medium),
    .iconSize = 13,
    .fill = ColorRole::button,
    .edge = ColorRole::buttonEdge};
inline constexpr ButtonStyle bordered{.height = 24,
    .padding = 10,
    .gap = 3,
    .text = text::caption.with(Weight::medium),
    .iconSize = 10,
    .fill = ColorRole::button,
    .edge = ColorRole::buttonEdge,
    .spinner = 12};
/// For use beside a text field.
inline constexpr ButtonStyle borderedField{.height = 28,
    .padding = 10,
    .text = text::caption.with(Weight::medium),
    .fill = ColorRole::button,
    .edge = ColorRole::buttonEdge,
    .spinner = 12};
/// An icon and a word without a background. The padding shows only on hover, so owners align the text and not
/// the edge.
inline constexpr ButtonStyle word{
    .height = 18, .padding = 6, .gap = 3, .radius = radius::small, .spinner = 12};
/// Only an icon, in a square.
inline constexpr ButtonStyle icon{.height = 28, .padding = 6, .iconSize = 13, .color = ColorRole::secondary};
/// The small "xmark", and the buttons that copy or delete a row.
inline constexpr ButtonStyle close{
    .height = 20, .padding = 4, .radius = radius::small, .iconSize = 10, .color = ColorRole::secondary};
inline constexpr ButtonStyle swap{.height = 26,
    .padding = 6,
    .radius = 13,
    .iconSize = 11,
    .fill = ColorRole::controlFaint,
    .edge = ColorRole::hairline,
    .color = ColorRole::accentIcon,
    .boldIcon = true};
inline constexpr ButtonStyle footerWarning{.height = 19,
    .padding = 6,
    .radius = radius::small,
    .text = text::smallCaption.with(Weight::bold),
    .iconSize = 10,
    .fill = ColorRole::redTint,
    .edge = ColorRole::redTintEdge,
    .color = ColorRole::red};
/// Only an icon, in the line of a field's caption.
inline constexpr ButtonStyle fieldIcon{
    .height = 18, .padding = 2, .radius = radius::small, .iconSize = 11, .color = ColorRole::secondary};
/// A suggested shortcut; checkable.
inline constexpr ButtonStyle suggestion{.height = 22,
    .padding = 8,
    .radius = radius::small,
    .text = text::smallCaption,
    .fill = ColorRole::button,
    .edge = ColorRole::buttonEdge,
    .color = ColorRole::secondary};

}  // namespace button

/// All buttons of the panels: an icon, a title, or both, in one of the styles above.
class Button final : public Control {
    Q_OBJECT

public:
    /// The content of a button. Without a title it needs a tooltip or a spoken caption.
    struct Face {
        QString icon = {};
        QString title = {};
    };

    Button(const ButtonStyle& style, const Face& face, QWidget* parent = nullptr);

    void setIconName(const QString& name);
    void setWeight(Weight weight);
    void setColor(ColorRole role);
    void setIconColor(ColorRole role);
    /// Lets the button grow to the free width of its row.
    void stretch();
    /// Shows a spinner in place of the icon.
    void setBusy(bool busy) override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Look {
        QBrush fill;
        QColor edge;
        QColor content;
    };
    [[nodiscard]] Look look() const;
    [[nodiscard]] TextStyle titleStyle() const;
    [[nodiscard]] QBrush fill() const;
    [[nodiscard]] int leadWidth() const;  ///< width of the icon or the spinner; 0 without either
    [[nodiscard]] int gap() const;
    [[nodiscard]] int contentWidth() const;
    [[nodiscard]] QRect leadArea() const;
    [[nodiscard]] QRect titleArea() const;
    void placeSpinner();

    ButtonStyle m_style;
    QString m_iconName;
    Spinner* m_spinner = nullptr;
};

}  // namespace tralio
