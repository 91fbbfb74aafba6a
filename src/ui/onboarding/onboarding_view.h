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
    [[nodiscard]] QWidget* makePage(int step);
    QWidget* bottomBar();

    void refresh();
    void showStep();
    [[nodiscard]] Button* mainButton() const;
    void keepFocus(QWidget* focused);

    OnboardingState& m_state;
    PageIndicator* m_indicator;
    Button* m_skip;
    QWidget* m_pageArea;
    // Pages, and what is on them, are made when they are first shown: those on the first start's first page
    // need no font for emoji, for one.
    QStackedLayout* m_pages;
    PermissionStep* m_accessibility = nullptr;
    PermissionStep* m_screenCapture = nullptr;
    Label* m_shortcuts = nullptr;
    Button* m_back;
    Button* m_next;
    Button* m_finish;
    int m_shownStep = 0;
};

}  // namespace tralio
