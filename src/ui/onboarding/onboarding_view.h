#pragma once

#include <QWidget>

class QStackedLayout;

namespace tralio {

class Button;
class Label;
class OnboardingState;
class PageIndicator;
class PermissionStep;

/// The walk-through: four pages over the whole window, between a bar that shows the progress and a bar with
/// the buttons. Keeps the focus while shown: Tab stays within it, and Return goes on unless another control
/// has the focus.
class OnboardingView final : public QWidget {
    Q_OBJECT

public:
    /// `state` outlives the view.
    explicit OnboardingView(OnboardingState& state, QWidget* parent = nullptr);
    ~OnboardingView() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    QWidget* topBar();
    QWidget* pages();
    QWidget* bottomBar();

    void refresh();
    void showStep();
    [[nodiscard]] Button* mainButton() const;
    void keepFocus(QWidget* focused);

    OnboardingState& m_state;
    PageIndicator* m_indicator;
    Button* m_skip;
    QWidget* m_pageArea;
    QStackedLayout* m_pages;
    PermissionStep* m_accessibility;
    PermissionStep* m_screenCapture;
    Label* m_shortcuts;
    Button* m_back;
    Button* m_next;
    Button* m_finish;
    int m_shownStep = 0;
};

}  // namespace tralio
