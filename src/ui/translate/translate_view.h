#pragma once

#include <QWidget>

class QShortcut;

namespace tralio {

class Button;
class ErrorStrip;
class Label;
class MenuButton;
class MultilineEnterInputView;
class ResultBlock;
class Reveal;
class Surface;
class TranslateState;

/// The translate panel: languages and tone, the input, and the result. Shows its state; stores nothing else.
class TranslateView final : public QWidget {
    Q_OBJECT

public:
    /// `state` outlives the view.
    explicit TranslateView(TranslateState& state, QWidget* parent = nullptr);

    /// Moves the focus into the input.
    void focusInput();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLayout* languageRow();
    QWidget* inputBox();
    QLayout* toolRow();
    QLayout* actionRow();
    QWidget* errorStrip();

    void refresh();
    void showCount(const QString& input);

    TranslateState& m_state;
    MenuButton* m_source;
    MenuButton* m_target;
    MenuButton* m_tone;
    Surface* m_inputBox;
    MultilineEnterInputView* m_input;
    QWidget* m_recognizing;
    Label* m_linesRead;
    Label* m_characterCount;
    bool m_wasShown = false;
    QString m_notice;
    QString m_message;
    qint64 m_errorCount = 0;
    /// The text counted last: counting a long one at every refresh would slow typing down.
    QString m_counted;
    Button* m_clear;
    Button* m_translate;
    Button* m_cancel;
    QShortcut* m_escape;  ///< cancels a recognition; disabled otherwise, so that Escape closes the window
    ErrorStrip* m_error;
    Reveal* m_errorReveal;
    ResultBlock* m_resultBlock;
};

}  // namespace tralio
