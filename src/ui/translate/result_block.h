#pragma once

#include <QWidget>

namespace tralio {

class Button;
class Label;
class ReadingArea;
class Surface;
class TranslateState;

/// The lower part of the translate panel: the translation, and the buttons that read it aloud and copy it.
class ResultBlock final : public QWidget {
    Q_OBJECT

public:
    /// `state` outlives the block.
    explicit ResultBlock(TranslateState& state, QWidget* parent = nullptr);

    /// Called by the panel whenever what it shows has changed.
    void refresh();

private:
    void refreshButtons();

    TranslateState& m_state;
    Button* m_speak;
    Button* m_copy;
    Label* m_title;
    ReadingArea* m_result;
    bool m_wasTranslating = false;
    QString m_shown;
};

}  // namespace tralio
