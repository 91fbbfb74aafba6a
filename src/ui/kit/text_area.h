#pragma once

#include <QTextEdit>

#include <functional>

#include "ui/kit/colors.h"
#include "ui/kit/text_style.h"

namespace tralio {

class OverlayScrollBar;

/// Plain text that scrolls, without a frame or a background: what the input box and the reading area share.
/// It gives back every character it was given, sets its lines at the distance of its style, and copies as
/// plain text.
class TextArea : public QTextEdit {
    Q_OBJECT

public:
    /// The text with line feeds between its lines. The toolkit's own `toPlainText` turns no-break spaces into
    /// blanks, and "U+2028" into line feeds.
    [[nodiscard]] QString text() const;

    /// Stands where the text would begin, while there is none.
    void setPlaceholder(const QString& placeholder, ColorRole role = ColorRole::placeholder);

    void setColor(ColorRole role);
    /// What a screen reader says of the text.
    void setNote(const QString& note);

    /// Lets the scroll thumb keep its distance from the edge of a widget around the area, so that it stands
    /// in the padding and not on the text.
    void setScrollFrame(QWidget* frame);

    /// As the toolkit's, for texts of any kind.
    void undo() {
        withAnyText([this] { QTextEdit::undo(); });
    }

protected:
    /// `inset` is the room between the edges and the text, in logical pixels: at the sides, and above.
    TextArea(const TextStyle& style, const QSize& inset, QWidget* parent = nullptr);

    /// Replaces the whole content in one step that can be undone. The caret goes to the end.
    void replaceText(const QString& text);

    /// Call before a text of any origin is inserted.
    void prepareFor(const QString& text);

    /// Does what brings back an earlier or a later text, which nobody knows before it stands there.
    void withAnyText(const std::function<void()>& change);

    /// Whether an input method shows a composition that is not in the text yet.
    [[nodiscard]] bool isComposing() const;

    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;

    [[nodiscard]] const TextStyle& textStyle() const { return m_style; }

private:
    void placeText(const QSize& inset);
    void followTheme();
    void describeAloud();

    TextStyle m_style;
    OverlayScrollBar* m_scrollBar;
    ColorRole m_role = ColorRole::text;
    bool m_hadEndlessWord = false;
    QString m_note;
    QString m_placeholder;
    ColorRole m_placeholderRole = ColorRole::placeholder;
};

}  // namespace tralio
