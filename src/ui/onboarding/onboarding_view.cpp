#include "ui/onboarding/onboarding_view.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStackedLayout>

#include "common/on_change.h"
#include "ui/kit/button.h"
#include "ui/kit/cross_fade.h"
#include "ui/kit/focus_order.h"
#include "ui/kit/keyboard_use.h"
#include "ui/kit/label.h"
#include "ui/kit/scroll_panel.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"
#include "ui/kit/window_frame.h"
#include "ui/onboarding/onboarding_pages.h"
#include "ui/onboarding/onboarding_state.h"
#include "ui/onboarding/page_indicator.h"
#include "ui/onboarding/permission_step.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int pageChange = 200;  // milliseconds

constexpr ButtonStyle nextButton{.height = 30,
    .padding = 18,
    .gap = 6,
    .radius = radius::block,
    .text = text::blockTitle,
    .iconSize = 10,
    .fill = ColorRole::accentFill,
    .color = ColorRole::onFill,
    .iconTrails = true};
constexpr ButtonStyle backButton{.height = 30,
    .padding = 14,
    .gap = 4,
    .radius = radius::block,
    .text = text::menu,
    .iconSize = 10,
    .fill = ColorRole::control,
    .edge = ColorRole::hairline};
constexpr ButtonStyle finishButton{.height = 34,
    .padding = 22,
    .gap = 3,
    .radius = radius::block,
    .text = text::cardTitle,
    .iconSize = 13,
    .fill = ColorRole::accentFill,
    .color = ColorRole::onFill,
    .fillEnd = ColorRole::fillGradientEnd};

}  // namespace

OnboardingView::OnboardingView(OnboardingState& state, QWidget* parent) : QWidget(parent), m_state(state) {
    setAccessibleName(u"Giới thiệu Tralio"_s);
    filled(this, column({}, {topBar(), new Divider, {pages(), {}, 1}, new Divider, bottomBar()}));
    onAnyChange(
        m_state, this, [this] { refresh(); });
    connect(qApp, &QApplication::focusChanged, this,
        [this](QWidget* /*before*/, QWidget* focused) { keepFocus(focused); });
    refresh();
}

OnboardingView::~OnboardingView() {
    disconnect(qApp, nullptr, this, nullptr);  // the focus changes again while the children are deleted
}

QWidget* OnboardingView::topBar() {
    m_indicator = new PageIndicator(OnboardingState::totalSteps);
    m_skip = new Button(button::word, {.title = u"Bỏ qua"_s});
    m_skip->setWeight(Weight::medium);
    m_skip->setColor(ColorRole::secondary);
    connect(m_skip, &Button::clicked, this, [this] { m_state.finish(); });
    const int skipInset = 20 - button::word.padding;
    auto* bar =
        filled(new QWidget, row({.padding = {20, 4, skipInset, 0}}, {m_indicator, Stretch{}, m_skip}));
    bar->setFixedHeight(48);
    return bar;
}

QWidget* OnboardingView::pages() {
    m_pageArea = new QWidget;
    m_pages = new QStackedLayout(m_pageArea);
    return m_pageArea;
}

QWidget* OnboardingView::makePage(int step) {
    switch (step) {
        case 0:
            return step1Welcome();
        case 1:
            m_accessibility = new PermissionStep(
                {u"1. Quyền Trợ năng (Accessibility)"_s,
                    u"Dùng để lắng nghe phím tắt dịch bôi đen (⌥D) và tự động trích xuất "
                    "đoạn văn bản bạn vừa chọn."_s,
                    u"Mở Cài đặt để Bật Quyền Trợ Năng"_s},
                [this] { m_state.requestAccessibility(); });
            m_screenCapture =
                new PermissionStep({u"2. Quyền Ghi màn hình (Screen Recording)"_s,
                                       u"Dùng cho tính năng Chụp & Tralio OCR (⌥S): Cho phép khoanh vùng màn "
                                       "hình để Apple Vision quét chữ tức thì."_s,
                                       u"Mở Cài đặt để Bật Quyền Ghi Màn Hình"_s},
                    [this] { m_state.requestScreenCapture(); });
            return step2Permissions(m_accessibility, m_screenCapture);
        case 2:
            return step3AIModel();
        default:
            m_shortcuts = new Label(QString(), text::caption.with(Weight::medium));
            m_shortcuts->setWraps();
            return step4Shortcuts(m_shortcuts);
    }
}

QWidget* OnboardingView::bottomBar() {
    m_back = new Button(backButton, {.icon = u"chevron.left"_s, .title = u"Quay lại"_s});
    connect(m_back, &Button::clicked, this, [this] { m_state.back(); });
    m_next = new Button(nextButton, {.icon = u"chevron.right"_s, .title = u"Tiếp tục"_s});
    connect(m_next, &Button::clicked, this, [this] { m_state.next(); });
    m_finish = new Button(finishButton, {.icon = u"sparkles"_s, .title = u"Bắt đầu sử dụng"_s});
    connect(m_finish, &Button::clicked, this, [this] { m_state.finish(); });
    auto* bar =
        filled(new QWidget, row({.padding = {20, 14, 20, 14}}, {m_back, Stretch{}, m_next, m_finish}));
    bar->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    return bar;
}

void OnboardingView::refresh() {
    while (m_pages->count() <= m_state.currentStep())
        m_pages->addWidget(new ScrollPanel(makePage(m_pages->count())));
    if (m_accessibility != nullptr)
        m_accessibility->setGranted(m_state.isAccessibilityGranted());
    if (m_screenCapture != nullptr)
        m_screenCapture->setGranted(m_state.isScreenCaptureGranted());
    if (m_shortcuts != nullptr)
        m_shortcuts->setText(m_state.shortcutsOfThisMachine());
    showStep();
}

void OnboardingView::showStep() {
    const int step = m_state.currentStep();
    const bool changed = m_shownStep != step;
    m_shownStep = step;
    CrossFade fade(m_pageArea, changed ? pageChange : 0);
    m_pages->setCurrentIndex(step);

    // Moves the focus to the main button, with its ring if it had one, before a button is hidden: Qt would
    // move it to the next control.
    const bool last = m_state.isLastStep();
    mainButton()->show();
    const auto* focused = qobject_cast<Button*>(QApplication::focusWidget());
    if ((focused == m_skip && last) || (focused == m_next && last) || (focused == m_finish && !last) ||
        (focused == m_back && m_state.isFirstStep()))
        mainButton()->setFocus(focused->showsFocusRing() ? Qt::TabFocusReason : Qt::OtherFocusReason);
    m_skip->setVisible(!last);
    m_back->setVisible(!m_state.isFirstStep());
    m_next->setVisible(!last);
    m_finish->setVisible(last);

    if (changed) {
        m_indicator->setCurrent(step);
        fade.start();
    }
}

Button* OnboardingView::mainButton() const {
    return m_state.isLastStep() ? m_finish : m_next;
}

void OnboardingView::keepFocus(QWidget* focused) {
    // A panel below that becomes visible focuses its own input: takes the focus back.
    if (isVisible() && focused != nullptr && focused->window() == window() && !isAncestorOf(focused))
        mainButton()->setFocus(Qt::OtherFocusReason);
}

void OnboardingView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    WindowFrame::paintGround(painter, *this);
}

void OnboardingView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_state.checkPermissions();
    mainButton()->setFocus(Qt::OtherFocusReason);
}

void OnboardingView::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && !isRepeat(*event))
        mainButton()->click();
    else if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown)
        QCoreApplication::sendEvent(m_pages->currentWidget(), event);  // which has no part to get it from
    else
        QWidget::keyPressEvent(event);
}

bool OnboardingView::focusNextPrevChild(bool next) {
    return moveFocus(*this, next);
}

}  // namespace tralio
