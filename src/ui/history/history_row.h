#pragma once

#include <optional>

#include "history/translation_item.h"
#include "ui/kit/control.h"

namespace tralio {

class Button;
class Label;

/// One entry of the history. A click on it, or Return, picks it; its two buttons copy and remove it, and the
/// Delete key removes it, too. Up and Down are handled by the list.
class HistoryRow final : public Control {
    Q_OBJECT

public:
    HistoryRow(const TranslationItem& item, const QString& date, QWidget* parent = nullptr);

    [[nodiscard]] const TranslationItem& item() const { return m_item; }
    void setDate(const QString& date);
    void setCopied(bool copied);

    /// Takes the focus over from another row: to itself, or to the same button that has it there.
    void takeFocusFrom(const HistoryRow& other);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void copyRequested();
    void removeRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QLayout* header(const QString& date);

    TranslationItem m_item;
    Label* m_date;
    Button* m_copy;
    Button* m_remove;
    std::optional<bool> m_copied;  ///< as last shown
};

}  // namespace tralio
