#pragma once

#include <QWidget>

class QShortcut;

namespace tralio {

class Button;
class ErrorStrip;
class Label;
class MenuButton;
class MultilineEnterInputView;
class ReadingArea;
class Reveal;
class Surface;
class TranslateState;

/// The translate panel: languages and tone, the input, and the result. Shows what its state says; keeps
/// nothing of its own.
class TranslateView final : public QWidget {
    Q_OBJECT

public:
    /// `state` outlives the view.
    explicit TranslateView(TranslateState& state, QWidget* parent = nullptr);

    /// Puts the caret into the input.
    void focusInput();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLayout* languageRow();
    QWidget* inputBox();
    QLayout* toolRow();
    QLayout* actionRow();
    QWidget* errorStrip();
    QWidget* resultBlock();

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
    bool m_wasTranslating = false;
    QString m_shownResult;
    QString m_counted;  ///< counting a long text at every refresh would be felt while typing
    Button* m_clear;
    Button* m_translate;
    Button* m_cancel;
    QShortcut* m_escape;  ///< ends the longest wait there is; without one the key closes the window
    ErrorStrip* m_error;
    Reveal* m_errorReveal;
    Button* m_speak;
    Button* m_copy;
    Surface* m_resultBlock;
    Label* m_resultTitle;
    ReadingArea* m_result;
};

}  // namespace tralio
